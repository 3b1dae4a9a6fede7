// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

#include <functional>
#include <vector>

/// A menu as data, which the user interface turns into a real one. Made anew each time it is shown,
/// so it tells what is possible at that moment. A value. [main]
class DXSHARED_EXPORT DXMenu final
{
public:
    /// What choosing an item does, on the main thread.
    using Action = std::function<void()>;

    /// Items that a key chooses as well, whatever their title: Del and F2.
    enum class Key { None, Drop, Rename };

    struct Item
    {
        /// For the user, localised; null for a separator.
        QString title;
        /// Empty for a separator, a submenu and a command that is not possible now.
        Action action;
        /// The items of a submenu.
        std::vector<Item> submenu;
        Key key = Key::None;

        bool isSeparator() const { return title.isNull(); }
    };

    explicit DXMenu(const QString &title);

    QString title() const { return m_title; }
    const std::vector<Item> &items() const { return m_items; }

    void addItem(const QString &title, const Action &action);
    void addItem(const Item &item);
    /// The first item with this key, submenus aside; null when there is none.
    const Item *itemForKey(Key key) const;
    /// Appends menu under its title.
    void addSubmenu(const DXMenu &menu);
    void addSeparator();

private:
    QString m_title;
    std::vector<Item> m_items;
};
