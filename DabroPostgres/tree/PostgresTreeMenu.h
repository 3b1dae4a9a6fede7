// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"
#include "tree/PostgresDatabaseTreeActions.h"

/// Puts together the context menu of a node, item by item. Used within one expression. [main]
class PostgresTreeMenu final
{
public:
    explicit PostgresTreeMenu(DXDatabaseTreeEntry &entry,
                              const QString &title = QStringLiteral("Root"));

    /// The menu as it is now.
    const DXMenu &menu() const { return m_menu; }

    PostgresTreeMenu &separator();
    /// What nodes of every driver offer.
    PostgresTreeMenu &newQuery();
    PostgresTreeMenu &disconnect();
    PostgresTreeMenu &import();
    PostgresTreeMenu &refresh();

    /// An item that calls the helper with the node; nothing happens when the helper is not this
    /// driver's.
    using HelperAction = void (PostgresDatabaseTreeActions::*)(const DXDatabaseTreeEntry &entry);
    PostgresTreeMenu &action(const QString &title, HelperAction operation,
                             DXMenu::Key key = DXMenu::Key::None);
    /// The same, which the Del key chooses, too.
    PostgresTreeMenu &drop(const QString &title, HelperAction operation)
    {
        return action(title, operation, DXMenu::Key::Drop);
    }
    /// The same, disabled unless the helper is capable of it.
    using Capability = PostgresDatabaseTreeActions::Capability;
    PostgresTreeMenu &action(const QString &title, HelperAction operation, Capability needed,
                             DXMenu::Key key = DXMenu::Key::None);
    PostgresTreeMenu &item(const QString &title, const DXDatabaseTreeEntry::HelperAction &action);
    /// A query tab that begins with loader's text.
    PostgresTreeMenu &loaderTab(const QString &title, const std::shared_ptr<DXQueryLoader> &loader);
    PostgresTreeMenu &submenu(const DXMenu &menu);

    /// Items that several kinds of node offer.
    PostgresTreeMenu &newTable();
    PostgresTreeMenu &newView();
    PostgresTreeMenu &newFunction(const QString &title);
    PostgresTreeMenu &exportAsSQLite();

private:
    DXMenu::Action helperAction(HelperAction operation);
    bool isCapableOf(Capability capability) const;
    PostgresTreeMenu &templateTab(const QString &title, const QString &queryTitle);

    DXDatabaseTreeEntry &m_entry;
    DXMenu m_menu;
};
