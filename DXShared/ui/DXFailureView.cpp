// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXFailureView.h"

#include "ui/DXTheme.h"

#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int barWidth = 4;
constexpr int mostLines = 8;

} // namespace

DXFailureView::DXFailureView(QWidget *parent)
    : QFrame(parent)
    , m_headline(new QLabel)
    , m_text(new QPlainTextEdit)
    , m_copy(new QPushButton(tr("Copy error")))
{
    m_headline->setTextFormat(Qt::PlainText);
    m_headline->setWordWrap(true);
    m_headline->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setReadOnly(true);
    m_text->setFrameShape(NoFrame);
    m_text->setAccessibleName(tr("What the server said"));
    m_text->setTabChangesFocus(true);
    // Servers point with a caret at what stands above it.
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->document()->setDocumentMargin(0);
    m_copy->setAutoDefault(false);
    connect(m_copy, &QPushButton::clicked, this, [this] {
        QGuiApplication::clipboard()->setText((headline() + u'\n' + text()).trimmed());
    });

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(barWidth + 12, 12, 12, 12);
    layout->setSpacing(8);
    auto *const top = new QHBoxLayout;
    top->setSpacing(8);
    top->addWidget(m_headline, 1);
    top->addWidget(m_copy, 0, Qt::AlignTop);
    layout->addLayout(top);
    layout->addWidget(m_text);
    applyTheme();
}

QString DXFailureView::headline() const
{
    return m_headline->text();
}

QString DXFailureView::text() const
{
    return m_text->toPlainText();
}

void DXFailureView::showFailure(const QString &headline, const QString &text)
{
    tell(Kind::Failure, headline, text);
}

void DXFailureView::showNote(const QString &headline)
{
    tell(Kind::Note, headline, QString());
}

void DXFailureView::tell(Kind kind, const QString &headline, const QString &text)
{
    m_kind = kind;
    m_copy->setVisible(kind == Kind::Failure);
    m_headline->setText(headline);
    m_text->setPlainText(text);
    m_text->setVisible(!text.isEmpty());
    applyTheme();
    fitText();
    show();
}

void DXFailureView::fitText()
{
    // QPlainTextEdit counts the height of its document in lines, as they are broken.
    const int lines = static_cast<int>(m_text->document()->size().height());
    m_text->setFixedHeight(std::clamp(lines, 1, mostLines) * m_text->fontMetrics().lineSpacing()
                           + 4);
}

void DXFailureView::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    fitText();
}

void DXFailureView::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void DXFailureView::applyTheme()
{
    const DXTheme &theme = DXTheme::of(palette());
    QPalette headline = m_headline->palette();
    headline.setColor(QPalette::WindowText, m_kind == Kind::Failure ? theme.danger : theme.text);
    m_headline->setPalette(headline);
    QPalette text = m_text->palette();
    text.setColor(QPalette::Base, theme.surface);
    m_text->setPalette(text);
}

void DXFailureView::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    const DXTheme &theme = DXTheme::of(palette());
    QPainter painter(this);
    painter.fillRect(rect(), theme.surface);
    painter.fillRect(QRect(0, 0, barWidth, height()),
                     m_kind == Kind::Failure ? theme.danger : theme.secondaryText);
}
