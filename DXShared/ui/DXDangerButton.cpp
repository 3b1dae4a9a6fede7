// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXDangerButton.h"

#include "ui/DXTheme.h"

#include <QPainter>

DXDangerButton::DXDangerButton(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
}

// Styles brighten the colour of a button in ways of their own, and the text on it fades.
void DXDangerButton::paintEvent(QPaintEvent *event)
{
    if (!isEnabled()) {
        QPushButton::paintEvent(event);
        return;
    }
    constexpr qreal radius = 3;
    const DXTheme &theme = DXTheme::of(palette());
    QColor fill = theme.danger;
    if (isDown())
        fill = fill.darker(120);
    else if (underMouse())
        fill = fill.darker(108);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const QRectF shape = QRectF(rect()).adjusted(1, 1, -1, -1);
    painter.drawRoundedRect(shape, radius, radius);
    painter.setPen(theme.surface);
    painter.drawText(shape, Qt::AlignCenter | Qt::TextShowMnemonic, text());
    if (!hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape.adjusted(2.5, 2.5, -2.5, -2.5), radius - 1, radius - 1);
}
