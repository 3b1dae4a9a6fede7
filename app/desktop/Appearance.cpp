// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Appearance.h"

#include "desktop/ActionSet.h"
#include "desktop/ControlStyle.h"
#include "ui/DXDesktopColors.h"

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QStyle>

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

const QLatin1String modeKey("window/appearance");
// What the desktop said last; it answers only after the first painting.
const QLatin1String desktopKey("window/desktopIsDark");

// What the palette tells before anything of ours is laid over it.
DXTheme::Appearance rememberedDesktop()
{
    const bool isDark =
        &DXTheme::of(QApplication::palette()) == &DXTheme::of(DXTheme::Appearance::Dark);
    return QSettings().value(desktopKey, isDark).toBool() ? DXTheme::Appearance::Dark
                                                          : DXTheme::Appearance::Light;
}

void setStyleOnce()
{
    static const bool isSet = [] {
        QApplication::setStyle(new ControlStyle);
        return true;
    }();
    Q_UNUSED(isSet)
}

void apply(const DXTheme &theme)
{
    // While there is a sheet, widgets get back with each change what colours they had when it came.
    qApp->setStyleSheet({});
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
        "QPushButton { padding: 3px 10px; }"
        "QLineEdit { border: 1px solid %8; border-radius: 3px; padding: 3px 6px; }"
        "QLineEdit:focus { border-color: %4; }"
        "QAbstractSpinBox QLineEdit, QComboBox QLineEdit { border: 0; padding: 0; }"
        "QAbstractItemView QLineEdit { border-radius: 0; padding: 0 2px; }"
        "QTableCornerButton::section { background: %5; border: 0; }"
        "QWidget#sidebar, QWidget#sidebar QTreeView { background: %6; }");
    qApp->setStyleSheet(sheet.arg(theme.border.name(), theme.secondaryText.name(),
                                  theme.text.name(), theme.accent.name(), theme.window.name(),
                                  theme.sidebar.name(), theme.surface.name(), theme.null.name()));
}

} // namespace

Appearance::Appearance(const ActionSet &actions, QObject *parent)
    : QObject(parent)
    , m_desktop(new DXDesktopColors(this))
    , m_desktops(rememberedDesktop())
{
    setStyleOnce();
    // In the order of Mode.
    constexpr ActionSet::Id ids[] = {ActionSet::Id::AppearanceSystem,
                                     ActionSet::Id::AppearanceLight, ActionSet::Id::AppearanceDark};
    constexpr int count = static_cast<int>(std::size(ids));
    for (int mode = 0; mode < count; ++mode)
        actions.connect(ids[mode], [this, mode] {
            QSettings().setValue(modeKey, mode);
            setMode(static_cast<Mode>(mode));
        });
    connect(m_desktop, &DXDesktopColors::told, this, &Appearance::takeDesktops);
    const int mode = std::clamp(QSettings().value(modeKey).toInt(), 0, count - 1);
    actions[ids[mode]]->setChecked(true);
    setMode(static_cast<Mode>(mode));
}

void Appearance::followDesktop()
{
    m_desktop->listen();
}

void Appearance::setMode(Mode mode)
{
    m_mode = mode;
    if (mode == Mode::System)
        apply(DXTheme::of(m_desktops));
    else
        apply(DXTheme::of(mode == Mode::Dark ? DXTheme::Appearance::Dark
                                             : DXTheme::Appearance::Light));
}

void Appearance::takeDesktops(DXTheme::Appearance appearance)
{
    QSettings().setValue(desktopKey, appearance == DXTheme::Appearance::Dark);
    const bool isNew = std::exchange(m_desktops, appearance) != appearance;
    if (isNew && m_mode == Mode::System)
        setMode(m_mode);
}
