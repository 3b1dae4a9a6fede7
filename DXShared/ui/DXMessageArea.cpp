// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXMessageArea.h"

#include "ui/DXLongText.h"
#include "ui/DXTheme.h"

#include <QAccessible>
#include <QTextDocument>

#include <algorithm>

namespace
{

constexpr int mostLines = 7;
// Beyond the lines, so that the last one is not cut at any scale.
constexpr int slack = 4;

} // namespace

DXMessageArea::DXMessageArea(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAccessibleName(tr("Message"));
    setFrameShape(QFrame::NoFrame);
    // What lies behind shows, in whatever colours.
    viewport()->setAutoFillBackground(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
    hide();
}

void DXMessageArea::setMessage(Kind kind, const QString &text)
{
    m_kind = kind;
    const DXTheme &theme = DXTheme::of(parentWidget() ? parentWidget()->palette() : palette());
    QPalette colors = palette();
    colors.setColor(QPalette::Text, kind == Kind::Error     ? theme.danger
                                    : kind == Kind::Success ? theme.success
                                                            : theme.secondaryText);
    setPalette(colors);
    DXLongText::show(*this, text);
    setVisible(!text.isEmpty());
    fit();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void DXMessageArea::clearMessage()
{
    setPlainText({});
    hide();
}

// The height of a plain text's document is counted in lines.
int DXMessageArea::neededHeight() const
{
    const int lines = std::clamp(static_cast<int>(document()->size().height()), 1, mostLines);
    return lines * fontMetrics().lineSpacing() + slack;
}

void DXMessageArea::fit()
{
    const bool isTooLong = document()->size().height() > mostLines;
    setVerticalScrollBarPolicy(isTooLong ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    updateGeometry();
}

QSize DXMessageArea::sizeHint() const
{
    return {QPlainTextEdit::sizeHint().width(), neededHeight()};
}

QSize DXMessageArea::minimumSizeHint() const
{
    return {0, neededHeight()};
}

void DXMessageArea::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        fit();
}
