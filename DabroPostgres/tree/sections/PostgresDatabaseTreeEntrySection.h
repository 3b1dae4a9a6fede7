// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptText.h"
#include "tree/DXDatabaseTreeEntry.h"

#include <optional>

class DatabaseResultSet;
class DXCollationKeys;

/// A folder that lists the objects of one kind: what all such folders do alike. A kind tells its
/// title, its query, how a row becomes a node, and the order of the nodes.
class PostgresDatabaseTreeEntrySection : public DXDatabaseTreeEntry
{
public:
    ~PostgresDatabaseTreeEntrySection() override;

    /// The schema whose objects are listed; null or empty for all.
    QString parentSchema() const { return m_parentSchema; }

    QString imageName() const override;
    bool canHaveChildren() const override { return true; }

protected:
    explicit PostgresDatabaseTreeEntrySection(const QString &parentSchema);

    bool canRefresh() const override { return true; }
    void loadEntries(DXError *error) final;

    /// The text of the query for a server of this version; null when it is not known yet. [any]
    virtual PostgresCatalogueQuery query(const QString &serverVersion) const = 0;
    /// The domain of errors of a load.
    virtual QString errorDomain() const = 0;
    /// How objects are named, for their constructors.
    struct Naming
    {
        QString defaultSchema;
        int displaySchema;
    };
    virtual std::shared_ptr<DXDatabaseTreeEntry> makeEntry(const DatabaseResultSet &row,
                                                           const Naming &naming) const = 0;
    /// What the node is sorted by as people read it; nothing where sorted() sorts.
    virtual std::optional<QString> sortName(const DXDatabaseTreeEntry &entry) const;
    /// Whether left comes before right where these names read alike.
    virtual bool comesBefore(const DXDatabaseTreeEntry &left,
                             const DXDatabaseTreeEntry &right) const;
    virtual List sorted(List entries) const { return entries; }
    /// Whether the nodes have the section's connection details, rather than a copy.
    virtual bool sharesConnectionDetails() const { return false; }

    /// What replaces "{SCHEMA_CLAUSE}": format with %1 replaced by the parent schema as it is;
    /// nothing without one.
    PostgresScriptText::Replacement schemaClause(const QString &format) const;
    /// A cell as text.
    static QString text(const DatabaseResultSet &row, quint32 column);

    /// The connection's default schema as the last load found it; null before. [any]
    QString defaultSchema() const;

private:
    Naming prepareNaming();
    List byName(List entries, const DXCollationKeys &names) const;

    const QString m_parentSchema;
    mutable std::mutex m_mutex;
    QString m_defaultSchema;
};
