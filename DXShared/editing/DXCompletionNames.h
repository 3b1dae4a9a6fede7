// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "editing/DXDatabaseAutocompleteEntry.h"
#include "editing/DXNameIndex.h"

#include <QStringList>

#include <memory>

class DXAutocompleteHelper;
class DabroDBC;

/// The names of one database in the order in which a completion looks for them; made once for what
/// a driver published, and shared. [any]
class DXSHARED_EXPORT DXCompletionNames final
{
public:
    using Entry = DXDatabaseAutocompleteEntry;
    using Entries = Entry::List;
    struct Init
    {
        Entries schemas;
        Entries tables;
        Entries columns;
        /// The schema whose tables need no other name.
        QString defaultSchema;
    };
    explicit DXCompletionNames(const Init &init);
    /// The names that helper has for details; nothing while it has none. Takes a second or
    /// two for 100,000 tables. [background]
    static std::shared_ptr<const DXCompletionNames> read(const DXAutocompleteHelper &helper,
                                                         const DabroDBC &details);

    /// The entries and an index over their names, by the same numbers. Of columns that are called
    /// the same there is one.
    const Entries &schemas() const { return m_schemas; }
    const DXNameIndex &schemaIndex() const { return m_schemaIndex; }
    const Entries &tables() const { return m_tables; }
    const DXNameIndex &tableIndex() const { return m_tableIndex; }
    const Entries &columns() const { return m_columns; }
    const DXNameIndex &columnIndex() const { return m_columnIndex; }

    /// Whether a table's own name is enough to find it.
    bool isInDefaultSchema(const Entry &table) const;
    /// The table of that name in parts, whatever the case: of the schema told, or else of the
    /// default schema, or else of the only schema that has one; null when there is none.
    const Entry *tableCalled(const QStringList &path) const;
    /// The schema of that name, whatever the case; null when there is none.
    const Entry *schemaCalled(const QString &name) const;

private:
    const Entries m_schemas;
    const Entries m_tables;
    const Entries m_columns;
    const DXNameIndex m_schemaIndex;
    const DXNameIndex m_tableIndex;
    const DXNameIndex m_columnIndex;
    const QString m_defaultSchema;
};
