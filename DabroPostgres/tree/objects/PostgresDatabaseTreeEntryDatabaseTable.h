// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "driver/PostgresCatalogueQuery.h"
#include "tree/DatabaseTreeEntryTable.h"

class DatabaseResultSet;
class PostgresTreeMenu;

/// A table, view or materialized view with its columns, indexes and triggers.
class PostgresDatabaseTreeEntryDatabaseTable final : public DatabaseTreeEntryTable
{
public:
    enum class TableType { Table = 0, View = 1, MaterializedView = 2 };

    struct Init
    {
        QString schema;
        QString tableName;
        /// The connection's default schema; null when it is not known.
        QString defaultSchema = {};
        /// As PostgresTreeNaming::shouldDisplaySchema() takes it.
        int displaySchema = 0;
    };
    explicit PostgresDatabaseTreeEntryDatabaseTable(const Init &init);

    const QString &schema() const { return m_schema; }
    QString defaultSchema() const { return m_defaultSchema; }
    bool isInDefaultSchema() const
    {
        return !m_defaultSchema.isNull() && m_defaultSchema == m_schema;
    }
    bool shouldDisplaySchema() const { return m_shouldDisplaySchema; }
    /// Set by whoever makes the node.
    TableType tableType() const { return m_tableType; }
    void setTableType(TableType type) { m_tableType = type; }

    QString displayName() const override;
    QString imageName() const override;
    DXMenu menu() override;
    /// What scripts the node offers, and where to send them.
    DXMenu createScriptAsMenu();
    /// A menu of scripts for a dump, which no menu holds.
    DXMenu createDumpTableMenu();
    /// As a query that this connection runs has to write it.
    QString dragDropString() const override;
    void onDoubleClicked() override { cmdDown(); }
    void cmdDown() override;
    void cmdRight() override;

    bool canHaveChildren() const override { return true; }

protected:
    bool canRefresh() const override { return true; }
    /// `loadTableEntries:error:`; for a materialized view `loadColumnsForMateralizedView:error:`.
    void loadEntries(DXError *error) override;

private:
    bool isTable() const { return m_tableType == TableType::Table; }
    PostgresCatalogueQuery columnsQuery(const QString &title) const;
    void loadTableEntries(DXError *error);
    void loadColumnsForMateralizedView(DXError *error);
    std::shared_ptr<DXDatabaseTreeEntry> makeColumn(const DatabaseResultSet &row);
    List makeFolders();
    QString selectQuery() const;

    void addNewAndAlterItems(PostgresTreeMenu &menu);
    void addRefreshItem(PostgresTreeMenu &menu);
    DXMenu exportMenu();
    void addTableScripts(DXMenu &menu);
    void addViewScripts(DXMenu &menu);

    const QString m_schema;
    const QString m_defaultSchema;
    const bool m_shouldDisplaySchema;
    TableType m_tableType = TableType::Table;
};
