// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/DXMenu.h"

#include <algorithm>

DXMenu::DXMenu(const QString &title)
    : m_title(title)
{ }

void DXMenu::addItem(const QString &title, const Action &action)
{
    addItem({.title = title, .action = action, .submenu = {}});
}

void DXMenu::addItem(const Item &item)
{
    m_items.push_back(item);
}

const DXMenu::Item *DXMenu::itemForKey(Key key) const
{
    const auto item = std::find_if(m_items.begin(), m_items.end(),
                                   [key](const Item &each) { return each.key == key; });
    return item == m_items.end() ? nullptr : &*item;
}

void DXMenu::addSubmenu(const DXMenu &menu)
{
    addItem({.title = menu.title(), .action = {}, .submenu = menu.items()});
}

void DXMenu::addSeparator()
{
    m_items.emplace_back();
}
