// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXDangerButton.h"

#include "ui/DXTheme.h"

#include <QEvent>

DXDangerButton::DXDangerButton(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    setAutoDefault(false);
    applyTheme();
}

void DXDangerButton::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        applyTheme();
}

void DXDangerButton::applyTheme()
{
    const DXTheme &theme = DXTheme::of(palette());
    QPalette colors = palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        colors.setColor(group, QPalette::Button, theme.danger);
        colors.setColor(group, QPalette::ButtonText, theme.surface);
    }
    if (colors != palette())
        setPalette(colors);
}
