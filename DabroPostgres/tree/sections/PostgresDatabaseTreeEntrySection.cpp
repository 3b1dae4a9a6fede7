// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDefaultSchemaHelper.h"
#include "tree/PostgresTreeQuery.h"

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
    QString sent = query({});
    List entries;
    const auto add = [&](const DatabaseResultSet &row) {
        entries.append(makeEntry(row, naming));
        adoptChild(*entries.constLast(), entryDetails);
    };
    DXError failure;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) {
            sent = query(client.serverVersion());
            PostgresCatalogueReader::read(client, sent, add, slot);
        },
        *details, &failure);
    if (!failure)
        setChildEntries(sorted(entries));
    PostgresTreeQuery::reportFailure(failure, errorDomain(), sent, error);
}

QString PostgresDatabaseTreeEntrySection::schemaClause(const QString &format) const
{
    return m_parentSchema.isEmpty() ? QString() : QString(format).replace(u"%1"_qs, m_parentSchema);
}

QString PostgresDatabaseTreeEntrySection::text(const DatabaseResultSet &row, quint32 column)
{
    return row.stringForColumnIndex(column).toText();
}
