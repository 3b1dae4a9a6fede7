// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionSequence.h"

#include "scripts/PostgresScriptText.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntrySequence.h"

using Sequence = PostgresDatabaseTreeEntrySequence;

PostgresDatabaseTreeEntrySectionSequence::PostgresDatabaseTreeEntrySectionSequence(
    const QString &parentSchema)
    : PostgresDatabaseTreeEntrySection(parentSchema)
{ }

QString PostgresDatabaseTreeEntrySectionSequence::displayName() const
{
    return PostgresTreeText::tr("Sequences");
}

DXMenu PostgresDatabaseTreeEntrySectionSequence::menu()
{
    return PostgresTreeMenu(*this).newQuery().separator().refresh().menu();
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntrySectionSequence::query(const QString &serverVersion) const
{
    Q_UNUSED(serverVersion)
    return PostgresScriptText::query(QStringLiteral("Postgres_ListUserSequences"),
                                     {schemaClause(QStringLiteral("AND n.nspname = '%1'"))});
}

QString PostgresDatabaseTreeEntrySectionSequence::errorDomain() const
{
    return QStringLiteral("postgres.databaseTree.loadSequence");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntrySectionSequence::makeEntry(const DatabaseResultSet &row,
                                                    const Naming &naming) const
{
    return std::make_shared<Sequence>(Sequence::Init{.sequenceName = text(row, 1),
                                                     .schema = text(row, 0),
                                                     .defaultSchema = naming.defaultSchema,
                                                     .displaySchema = naming.displaySchema});
}

std::optional<QString>
PostgresDatabaseTreeEntrySectionSequence::sortName(const DXDatabaseTreeEntry &entry) const
{
    return static_cast<const Sequence &>(entry).sequenceName();
}
