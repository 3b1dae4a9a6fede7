// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/objects/PostgresDatabaseTreeEntryOnlyChild.h"

/// A column of a table or view, or an attribute of a composite type. Below it is the sequence that
/// its default draws from.
class PostgresDatabaseTreeEntryDatabaseTableColumn final : public PostgresDatabaseTreeEntryOnlyChild
{
public:
    struct Init
    {
        QString columnName;
        QString tableName = {};
        QString schema = {};
        /// What the sequence's schema is compared with.
        QString defaultSchema = {};
        bool isPrimaryKey = false;
        /// Null without a sequence.
        QString sequenceName = {};
    };
    explicit PostgresDatabaseTreeEntryDatabaseTableColumn(const Init &init);

    QString columnName() const { return m_init.columnName; }
    QString tableName() const { return m_init.tableName; }
    QString schema() const { return m_init.schema; }
    bool isPrimaryKey() const { return m_init.isPrimaryKey; }
    QString sequenceName() const { return m_init.sequenceName; }

    /// The sequence that a column's default draws from, as it is written there without the quotes
    /// around it; null when it draws from none. [any]
    static QString sequenceNameOfDefault(const QString &defaultValue);

    QString imageName() const override;
    DXMenu menu() override;
    QString dragDropString() const override { return m_init.columnName; }
    bool canHaveChildren() const override { return !m_init.sequenceName.isNull(); }

protected:
    std::shared_ptr<DXDatabaseTreeEntry> makeChild() const override;

private:
    const Init m_init;
};
