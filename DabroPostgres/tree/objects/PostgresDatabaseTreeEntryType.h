// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "driver/PostgresCatalogueQuery.h"
#include "tree/DXDatabaseTreeEntry.h"

class DatabaseResultSet;

/// A type that users made: an enumeration with its labels, or a composite or other type with its
/// attributes.
class PostgresDatabaseTreeEntryType final : public DXDatabaseTreeEntry
{
public:
    struct Init
    {
        QString typeName;
        QString schema = {};
        /// False for an enumeration.
        bool userType = true;
        QString defaultSchema = {};
        int displaySchema = 0;
    };
    explicit PostgresDatabaseTreeEntryType(const Init &init);

    QString typeName() const { return m_typeName; }
    QString schema() const { return m_schema; }
    bool userType() const { return m_userType; }
    bool shouldDisplaySchema() const { return m_shouldDisplaySchema; }

    std::shared_ptr<DXQueryLoader> queryLoaderForAlter() const;

    QString displayName() const override;
    QString details() const override;
    QString imageName() const override;
    DXMenu menu() override;
    void onDoubleClicked() override { cmdDown(); }
    void cmdDown() override;
    bool canHaveChildren() const override { return true; }

protected:
    bool canRefresh() const override { return true; }
    /// `loadColumnsForUserType:error:` or `loadEntriesForEnumType:error:`.
    void loadEntries(DXError *error) override;

private:
    PostgresCatalogueQuery detailsQuery(const QString &title) const;
    void loadColumnsForUserType(DXError *error);
    void loadEntriesForEnumType(DXError *error);
    std::shared_ptr<DXDatabaseTreeEntry> makeAttribute(const DatabaseResultSet &row);
    std::shared_ptr<DXDatabaseTreeEntry> makeLabel(const DatabaseResultSet &row);

    const QString m_typeName;
    const QString m_schema;
    const bool m_userType;
    const bool m_shouldDisplaySchema;
};
