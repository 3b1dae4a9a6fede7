// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXTheme.h"

const DXTheme &DXTheme::of(Appearance appearance)
{
    static const DXTheme light{
        .window = QColor(0xF6F7F9),
        .sidebar = QColor(0xEEF0F3),
        .surface = QColor(0xFFFFFF),
        .border = QColor(0xD9DDE3),
        .alternateRow = QColor(0xF8F9FB),
        .selection = QColor(0xDCE8FD),
        .text = QColor(0x1F2328),
        .secondaryText = QColor(0x5B6470),
        .null = QColor(0x8A939E),
        .accent = QColor(0x2563EB),
        .danger = QColor(0xC62828),
        .warning = QColor(0x9A5B00),
        .success = QColor(0x1B7F3B),
    };
    static const DXTheme dark{
        .window = QColor(0x1E2127),
        .sidebar = QColor(0x1B1E23),
        .surface = QColor(0x16181D),
        .border = QColor(0x2F343D),
        .alternateRow = QColor(0x1A1D22),
        .selection = QColor(0x24406B),
        .text = QColor(0xE4E7EB),
        .secondaryText = QColor(0x9AA3AE),
        .null = QColor(0x6F7884),
        .accent = QColor(0x6AA6FF),
        .danger = QColor(0xFF7B72),
        .warning = QColor(0xE3B341),
        .success = QColor(0x57C785),
    };
    return appearance == Appearance::Light ? light : dark;
}

const DXTheme &DXTheme::of(const QPalette &palette)
{
    const bool isDark = palette.color(QPalette::Window).lightness()
                        < palette.color(QPalette::WindowText).lightness();
    return of(isDark ? Appearance::Dark : Appearance::Light);
}

QPalette DXTheme::palette() const
{
    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, surface);
    palette.setColor(QPalette::AlternateBase, alternateRow);
    palette.setColor(QPalette::Button, window);
    palette.setColor(QPalette::ToolTipBase, surface);
    palette.setColor(QPalette::Mid, border);
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::Link, accent);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::HighlightedText})
        palette.setColor(role, text);
    palette.setColor(QPalette::PlaceholderText, secondaryText);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, null);
    return palette;
}
