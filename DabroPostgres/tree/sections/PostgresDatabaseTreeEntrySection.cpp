// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "core/DXCollationKeys.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDefaultSchemaHelper.h"
#include "tree/PostgresTreeQuery.h"

#include <utility>

PostgresDatabaseTreeEntrySection::PostgresDatabaseTreeEntrySection(const QString &parentSchema)
    : m_parentSchema(parentSchema)
{ }

PostgresDatabaseTreeEntrySection::~PostgresDatabaseTreeEntrySection() = default;

QString PostgresDatabaseTreeEntrySection::imageName() const
{
    return QStringLiteral("DatabaseTree-Folder");
}

QString PostgresDatabaseTreeEntrySection::defaultSchema() const
{
    const std::lock_guard lock(m_mutex);
    return m_defaultSchema;
}

PostgresDatabaseTreeEntrySection::Naming PostgresDatabaseTreeEntrySection::prepareNaming()
{
    const QString schema =
        PostgresDefaultSchemaHelper::sharedInstance().schemaForDBC(*databaseConnectionDetails());
    const std::lock_guard lock(m_mutex);
    m_defaultSchema = schema;
    // The schema node above names the schema already.
    return {.defaultSchema = schema, .displaySchema = m_parentSchema.isEmpty() ? -1 : 0};
}

void PostgresDatabaseTreeEntrySection::loadEntries(DXError *error)
{
    const Naming naming = prepareNaming();
    const auto details = databaseConnectionDetails();
    // One copy serves all nodes of a load: none of them changes it.
    const auto entryDetails = sharesConnectionDetails() ? details : details->copy();
    PostgresCatalogueQuery sent = query({});
    List entries;
    DXCollationKeys names;
    const auto add = [&](const DatabaseResultSet &row) {
        entries.append(makeEntry(row, naming));
        const auto &entry = entries.constLast();
        adoptChild(*entry, entryDetails);
        if (const auto name = sortName(*entry))
            names.add(*name);
    };
    DXError failure;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) {
            sent = query(client.serverVersion());
            PostgresCatalogueReader::read(client, sent, add, slot);
        },
        *details, &failure);
    if (!failure)
        setChildEntries(names.size() > 0 ? byName(std::move(entries), names)
                                         : sorted(std::move(entries)));
    PostgresTreeQuery::reportFailure(failure, errorDomain(), sent.text(), error);
}

DXDatabaseTreeEntry::List
PostgresDatabaseTreeEntrySection::byName(List entries, const DXCollationKeys &names) const
{
    List sorted;
    sorted.reserve(entries.size());
    const auto &all = std::as_const(entries);
    const auto before = [&](qsizetype left, qsizetype right) {
        return comesBefore(*all[left], *all[right]);
    };
    for (const qsizetype index : names.sortedIndexes(before))
        sorted.append(all[index]);
    return sorted;
}

std::optional<QString>
PostgresDatabaseTreeEntrySection::sortName(const DXDatabaseTreeEntry &entry) const
{
    Q_UNUSED(entry)
    return std::nullopt;
}

bool PostgresDatabaseTreeEntrySection::comesBefore(const DXDatabaseTreeEntry &left,
                                                   const DXDatabaseTreeEntry &right) const
{
    Q_UNUSED(left)
    Q_UNUSED(right)
    return false;
}

PostgresScriptText::Replacement
PostgresDatabaseTreeEntrySection::schemaClause(const QString &format) const
{
    return {.placeholder = QLatin1String("{SCHEMA_CLAUSE}"),
            .text = m_parentSchema.isEmpty() ? QString()
                                             : QString(format).replace(u"%1"_qs, m_parentSchema),
            .isPlain = PostgresCatalogueQuery::isPlainName(m_parentSchema)};
}

QString PostgresDatabaseTreeEntrySection::text(const DatabaseResultSet &row, quint32 column)
{
    return row.stringForColumnIndex(column).toText();
}
