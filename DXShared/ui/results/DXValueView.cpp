// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXValueView.h"

#include "ui/DXLongText.h"
#include "ui/results/DXJsonText.h"
#include "ui/results/DXResultText.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

// Longer documents would hold up the window while they are read and laid out.
constexpr qsizetype longestJson = 4 * 1024 * 1024;

QString sizeOf(const DXValue &value, const QString &text)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    if (value.isBytes()) {
        // Two digits each, after "\\x".
        const qsizetype bytes = (text.size() - 2) / 2;
        return bytes == 1 ? DXValueView::tr("1 byte")
                          : DXValueView::tr("%1 bytes").arg(QLocale().toString(bytes));
    }
    return text.size() == 1 ? DXValueView::tr("1 character")
                            : DXValueView::tr("%1 characters").arg(QLocale().toString(text.size()));
}

} // namespace

DXValueView::DXValueView(QWidget *parent)
    : QDialog(parent)
    , m_heading(new QLabel)
    , m_part(new QLabel)
    , m_text(new QPlainTextEdit)
    , m_layout(new QCheckBox(tr("&Lay out JSON")))
{
    resize(640, 420);
    m_heading->setTextFormat(Qt::PlainText);
    m_part->setWordWrap(true);
    m_part->setTextFormat(Qt::PlainText);
    m_text->setReadOnly(true);
    m_text->setAccessibleName(tr("Value"));
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_layout->setChecked(true);
    connect(m_layout, &QCheckBox::toggled, this, &DXValueView::update);

    auto *const copy = new QPushButton(tr("&Copy"));
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(wholeText()); });
    auto *const close = new QPushButton(tr("Close"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_layout);
    buttons->addStretch();
    buttons->addWidget(copy);
    buttons->addWidget(close);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(8);
    layout->addWidget(m_heading);
    layout->addWidget(m_text);
    layout->addWidget(m_part);
    layout->addLayout(buttons);
}

void DXValueView::showValue(const QString &column, const DXValue &value)
{
    m_raw = DXResultText::textOf(value);
    m_indented = m_raw.size() <= longestJson ? DXJsonText::indented(m_raw) : QString();
    setWindowTitle(column);
    m_heading->setText(QStringLiteral("%1 · %2").arg(column, sizeOf(value, m_raw)));
    m_layout->setVisible(!m_indented.isNull());
    update();
    show();
    raise();
    activateWindow();
}

const QString &DXValueView::wholeText() const
{
    return m_layout->isChecked() && !m_indented.isNull() ? m_indented : m_raw;
}

void DXValueView::update()
{
    DXLongText::show(*m_text, wholeText());
    const qsizetype shown = DXLongText::shownPart(wholeText()).size();
    m_part->setVisible(shown < wholeText().size());
    m_part->setText(tr("The first %1 of %2 characters are shown. Copy takes all of them.")
                        .arg(QLocale().toString(shown), QLocale().toString(wholeText().size())));
}
