// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXFailureView.h"

#include "ui/DXLongText.h"
#include "ui/DXTheme.h"

#include <QAccessible>
#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
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

DXFailureView::DXFailureView(Place place, QWidget *parent)
    : QFrame(parent)
    , m_place(place)
    , m_headline(new QLabel)
    , m_buttons(new QHBoxLayout)
    , m_details(new QPushButton(tr("Details")))
    , m_copy(new QPushButton(tr("Copy error")))
    , m_text(new QPlainTextEdit)
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
    createButtons();

    const int edge = place == Place::Sheet ? 12 : 8;
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(barWidth + 12, edge, edge, edge);
    layout->setSpacing(8);
    auto *const top = new QHBoxLayout;
    top->setSpacing(8);
    top->addWidget(m_headline, 1);
    top->addLayout(m_buttons);
    top->setAlignment(m_buttons, Qt::AlignTop);
    layout->addLayout(top);
    layout->addWidget(m_text);
    applyTheme();
}

void DXFailureView::createButtons()
{
    m_buttons->setSpacing(8);
    m_details->setCheckable(true);
    m_details->setChecked(m_place == Place::Sheet);
    connect(m_details, &QPushButton::toggled, m_text, &QWidget::setVisible);
    connect(m_copy, &QPushButton::clicked, this, [this] {
        QGuiApplication::clipboard()->setText((headline() + u'\n' + text()).trimmed());
    });
    m_buttons->addWidget(m_details);
    m_buttons->addWidget(m_copy);
    if (m_place == Place::Window) {
        auto *const close = new QPushButton(tr("Close"));
        connect(close, &QPushButton::clicked, this, &DXFailureView::closeRequested);
        m_buttons->addWidget(close);
    }
    // Return in a sheet means the sheet's own button.
    for (QPushButton *const button : {m_details, m_copy})
        button->setAutoDefault(false);
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

void DXFailureView::addRemedy(const QString &title, const std::function<void()> &apply)
{
    auto *const button = new QPushButton(title);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, apply);
    m_buttons->insertWidget(0, button);
}

void DXFailureView::focusButtons()
{
    for (int index = 0; index < m_buttons->count(); ++index) {
        QWidget *const button = m_buttons->itemAt(index)->widget();
        if (button->isVisibleTo(this)) {
            button->setFocus(Qt::ShortcutFocusReason);
            return;
        }
    }
}

void DXFailureView::tell(Kind kind, const QString &headline, const QString &text)
{
    m_kind = kind;
    m_copy->setVisible(kind == Kind::Failure);
    m_details->setVisible(m_place == Place::Window && !text.isEmpty());
    m_headline->setText(headline);
    DXLongText::show(*m_text, text);
    m_text->setVisible(m_details->isChecked() && !text.isEmpty());
    applyTheme();
    fitText();
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void DXFailureView::keyPressEvent(QKeyEvent *event)
{
    if (m_place == Place::Window && event->key() == Qt::Key_Escape)
        Q_EMIT closeRequested();
    else
        QFrame::keyPressEvent(event);
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
    if (m_place == Place::Window)
        painter.fillRect(QRect(0, height() - 1, width(), 1), theme.border);
    painter.fillRect(QRect(0, 0, barWidth, height()),
                     m_kind == Kind::Failure ? theme.danger : theme.secondaryText);
}
