// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXValueView.h"

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

QString sizeOf(const DXValue &value, const QString &text)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    if (value.isBytes())
        return DXValueView::tr("%n byte(s)", nullptr, static_cast<int>(value.toBytes().size()));
    return DXValueView::tr("%n character(s)", nullptr, static_cast<int>(text.size()));
}

} // namespace

DXValueView::DXValueView(QWidget *parent)
    : QDialog(parent)
    , m_heading(new QLabel)
    , m_text(new QPlainTextEdit)
    , m_layout(new QCheckBox(tr("&Lay out JSON")))
{
    resize(640, 420);
    m_heading->setTextFormat(Qt::PlainText);
    m_text->setReadOnly(true);
    m_text->setAccessibleName(tr("Value"));
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_layout->setChecked(true);
    connect(m_layout, &QCheckBox::toggled, this, &DXValueView::update);

    auto *const copy = new QPushButton(tr("&Copy"));
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_text->toPlainText()); });
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
    layout->addLayout(buttons);
}

void DXValueView::showValue(const QString &column, const DXValue &value)
{
    m_raw = DXResultText::textOf(value);
    m_indented = DXJsonText::indented(m_raw);
    setWindowTitle(column);
    m_heading->setText(QStringLiteral("%1 · %2").arg(column, sizeOf(value, m_raw)));
    m_layout->setVisible(!m_indented.isNull());
    update();
    show();
    raise();
    activateWindow();
}

void DXValueView::update()
{
    m_text->setPlainText(m_layout->isChecked() && !m_indented.isNull() ? m_indented : m_raw);
}
