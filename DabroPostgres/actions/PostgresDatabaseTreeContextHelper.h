// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/PostgresDatabaseTreeActions.h"

#include <QCoreApplication>

/// What the menus of the catalogue tree do beyond opening tabs: above all, dropping things after
/// the user has seen the statement and agreed. Owned by a shared pointer; a sheet that outlives it
/// changes no tree any more. All [main].
class PostgresDatabaseTreeContextHelper final
    : public PostgresDatabaseTreeActions,
      public std::enable_shared_from_this<PostgresDatabaseTreeContextHelper>
{
    Q_DECLARE_TR_FUNCTIONS(PostgresDatabaseTreeContextHelper)

public:
    using PostgresDatabaseTreeActions::PostgresDatabaseTreeActions;
    ~PostgresDatabaseTreeContextHelper() override;

    bool isCapableOf(Capability capability, const Entry &entry) const override;

    void newStoredProcedure() override;
    /// Opens a query tab with query.
    void addNewTable(const Entry &entry, const QString &query) override;
    /// Opens the designer for a table; nothing for other nodes.
    void alterTable(const Entry &entry) override;

    /// Each does nothing for a node of another kind.
    void confirmDropDatabase(const Entry &entry) override;
    void confirmDropTable(const Entry &entry) override;
    void confirmDropColumn(const Entry &entry) override;
    void confirmDropFunction(const Entry &entry) override;
    void confirmDropSequence(const Entry &entry) override;
    void confirmDropType(const Entry &entry) override;
    void confirmDropIndex(const Entry &entry) override;

private:
    struct Drop;

    void confirmDrop(const Entry &entry, const Drop &drop);
    void dropped(const Entry &entry, const Drop &drop);
    static void refreshSearch(const std::shared_ptr<Entry> &database);
};
