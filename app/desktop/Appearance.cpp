// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Appearance.h"

#include "desktop/ActionSet.h"
#include "ui/DXTheme.h"

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QStyle>

#include <algorithm>
#include <iterator>

namespace
{

const QLatin1String key("window/appearance");

const DXTheme &themeOf(Appearance::Mode mode)
{
    if (mode == Appearance::Mode::Light)
        return DXTheme::of(DXTheme::Appearance::Light);
    if (mode == Appearance::Mode::Dark)
        return DXTheme::of(DXTheme::Appearance::Dark);
    // What the desktop asks for, before anything of ours was laid over it.
    static const DXTheme &desktops = DXTheme::of(QApplication::palette());
    return desktops;
}

} // namespace

void Appearance::apply(Mode mode)
{
    static const DXTheme &desktops = themeOf(Mode::System);
    const DXTheme &theme = mode == Mode::System ? desktops : themeOf(mode);
    QApplication::setPalette(theme.palette());
    const QString sheet = QStringLiteral(
        "QToolBar { border: 0; border-bottom: 1px solid %1; padding: 4px 8px; spacing: 4px; }"
        "QToolButton[popupMode=\"2\"] { border: 1px solid %1; border-radius: 3px; padding: 3px 20px"
        " 3px 8px; background: %7; }"
        "QToolButton::menu-indicator { subcontrol-origin: padding; subcontrol-position: center "
        "right;"
        " right: 6px; }"
        "QToolBar::separator { background: %1; width: 1px; margin: 4px; }"
        "QStatusBar { border-top: 1px solid %1; }"
        "QStatusBar::item { border: 0; }"
        "QSplitter::handle { background: %1; }"
        "QSplitter::handle:horizontal { width: 1px; }"
        "QSplitter::handle:vertical { height: 1px; }"
        "QTabWidget::pane { border: 0; border-top: 1px solid %1; }"
        "QTabBar { qproperty-drawBase: 0; }"
        "QTabBar::tab { padding: 6px 12px; border: 0; border-bottom: 2px solid transparent;"
        " color: %2; background: transparent; }"
        "QTabBar::tab:selected { color: %3; border-bottom-color: %4; }"
        "QTabBar::tab:hover { color: %3; }"
        "QHeaderView { background: %5; }"
        "QHeaderView::section { background: %5; color: %2; border: 0;"
        " border-right: 1px solid %1; border-bottom: 1px solid %1; padding: 2px 6px; }"
        "QTableView { gridline-color: %1; }"
        "QTableCornerButton::section { background: %5; border: 0; }"
        "QWidget#sidebar, QWidget#sidebar QTreeView { background: %6; }");
    qApp->setStyleSheet(sheet.arg(theme.border.name(), theme.secondaryText.name(),
                                  theme.text.name(), theme.accent.name(), theme.window.name(),
                                  theme.sidebar.name(), theme.surface.name()));
}

void Appearance::restore(const ActionSet &actions)
{
    // In the order of Mode.
    constexpr ActionSet::Id ids[] = {ActionSet::Id::AppearanceSystem,
                                     ActionSet::Id::AppearanceLight, ActionSet::Id::AppearanceDark};
    constexpr int count = static_cast<int>(std::size(ids));
    for (int mode = 0; mode < count; ++mode)
        actions.connect(ids[mode], [mode] {
            QSettings().setValue(key, mode);
            apply(static_cast<Mode>(mode));
        });
    const int mode = std::clamp(QSettings().value(key).toInt(), 0, count - 1);
    actions[ids[mode]]->setChecked(true);
    apply(static_cast<Mode>(mode));
}
