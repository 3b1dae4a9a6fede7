// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresTreeMenu.h"

#include "driver/PostgresSystemDatabaseQueries.h"
#include "tree/PostgresTreeText.h"

PostgresTreeMenu::PostgresTreeMenu(DXDatabaseTreeEntry &entry, const QString &title)
    : m_entry(entry)
    , m_menu(title)
{ }

PostgresTreeMenu &PostgresTreeMenu::separator()
{
    m_menu.addSeparator();
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::newQuery()
{
    m_menu.addItem(m_entry.newQueryMenuItem());
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::disconnect()
{
    m_menu.addItem(m_entry.disconnectMenuItem());
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::import()
{
    m_menu.addItem(m_entry.importMenuItem());
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::refresh()
{
    m_menu.addItem(m_entry.refreshMenuItem());
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::action(const QString &title, HelperAction operation,
                                           DXMenu::Key key)
{
    m_menu.addItem({.title = title, .action = helperAction(operation), .submenu = {}, .key = key});
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::action(const QString &title, HelperAction operation,
                                           Capability needed, DXMenu::Key key)
{
    m_menu.addItem({.title = title,
                    .action = isCapableOf(needed) ? helperAction(operation) : DXMenu::Action(),
                    .submenu = {},
                    .key = key});
    return *this;
}

DXMenu::Action PostgresTreeMenu::helperAction(HelperAction operation)
{
    return m_entry.actionOnHelper([operation](auto &helper, const auto &entry) {
        if (auto *const actions = dynamic_cast<PostgresDatabaseTreeActions *>(&helper))
            (actions->*operation)(entry);
    });
}

bool PostgresTreeMenu::isCapableOf(Capability capability) const
{
    const auto helper = m_entry.contextHelper();
    const auto *const actions = dynamic_cast<PostgresDatabaseTreeActions *>(helper.get());
    return actions && actions->isCapableOf(capability, m_entry);
}

PostgresTreeMenu &PostgresTreeMenu::item(const QString &title,
                                         const DXDatabaseTreeEntry::HelperAction &action)
{
    m_menu.addItem(title, m_entry.actionOnHelper(action));
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::loaderTab(const QString &title,
                                              const std::shared_ptr<DXQueryLoader> &loader)
{
    return item(title, [loader](auto &helper, const auto &entry) {
        helper.addQueryTabWithQueryLoader(entry, loader);
    });
}

PostgresTreeMenu &PostgresTreeMenu::submenu(const DXMenu &menu)
{
    m_menu.addSubmenu(menu);
    return *this;
}

PostgresTreeMenu &PostgresTreeMenu::newTable()
{
    const QString query = PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("NewTable"));
    return item(PostgresTreeText::tr("New table"), [query](auto &helper, const auto &entry) {
        if (auto *const actions = dynamic_cast<PostgresDatabaseTreeActions *>(&helper))
            actions->addNewTable(entry, query);
    });
}

PostgresTreeMenu &PostgresTreeMenu::newView()
{
    return templateTab(PostgresTreeText::tr("New view"), QStringLiteral("NewView"));
}

PostgresTreeMenu &PostgresTreeMenu::newFunction(const QString &title)
{
    return templateTab(title, QStringLiteral("NewFunction"));
}

PostgresTreeMenu &PostgresTreeMenu::templateTab(const QString &title, const QString &queryTitle)
{
    const QString query = PostgresSystemDatabaseQueries::queryByTitle(queryTitle);
    return item(title,
                [query](auto &helper, const auto &entry) { helper.addQueryTab(entry, query); });
}

PostgresTreeMenu &PostgresTreeMenu::exportAsSQLite()
{
    return submenu(PostgresTreeMenu(m_entry, QStringLiteral("Export"))
                       .action(QStringLiteral("SQLite"),
                               &PostgresDatabaseTreeActions::exportDatabaseAsSQLite,
                               Capability::ExportAsSQLite)
                       .menu());
}
