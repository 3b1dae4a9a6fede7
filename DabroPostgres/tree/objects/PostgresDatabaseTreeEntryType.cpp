// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntryType.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"
#include "scripts/object/PostgresScriptAlterTypeQueryLoader.h"
#include "scripts/object/PostgresScriptAlterUserEnumerationQueryLoader.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeNaming.h"
#include "tree/PostgresTreeQuery.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTableColumn.h"

PostgresDatabaseTreeEntryType::PostgresDatabaseTreeEntryType(const Init &init)
    : m_typeName(init.typeName)
    , m_schema(init.schema)
    , m_userType(init.userType)
    , m_shouldDisplaySchema(PostgresTreeNaming::shouldDisplaySchema(init.schema, init.defaultSchema,
                                                                    init.displaySchema))
{ }

std::shared_ptr<DXQueryLoader> PostgresDatabaseTreeEntryType::queryLoaderForAlter() const
{
    if (m_userType)
        return std::make_shared<PostgresScriptAlterTypeQueryLoader>(
            PostgresScriptAlterTypeQueryLoader::Init{.typeName = m_typeName, .schema = m_schema});
    return std::make_shared<PostgresScriptAlterUserEnumerationQueryLoader>(
        PostgresScriptAlterUserEnumerationQueryLoader::Init{.typeName = m_typeName,
                                                            .schema = m_schema});
}

QString PostgresDatabaseTreeEntryType::displayName() const
{
    return PostgresTreeNaming::displayName(m_shouldDisplaySchema, m_schema, m_typeName);
}

QString PostgresDatabaseTreeEntryType::details() const
{
    return m_userType ? QStringLiteral("User type") : QStringLiteral("User enumeration");
}

QString PostgresDatabaseTreeEntryType::imageName() const
{
    return m_userType ? QStringLiteral("DatabaseTree-UserType")
                      : QStringLiteral("DatabaseTree-UserEnumeration");
}

DXMenu PostgresDatabaseTreeEntryType::menu()
{
    return PostgresTreeMenu(*this)
        .newQuery()
        .separator()
        .loaderTab(PostgresTreeText::tr("Alter type"), queryLoaderForAlter())
        .drop(PostgresTreeText::tr("Drop type"), &PostgresDatabaseTreeActions::confirmDropType)
        .separator()
        .refresh()
        .menu();
}

void PostgresDatabaseTreeEntryType::cmdDown()
{
    if (const auto helper = contextHelper())
        helper->addQueryTabWithQueryLoader(*this, queryLoaderForAlter());
}

void PostgresDatabaseTreeEntryType::loadEntries(DXError *error)
{
    if (m_userType)
        loadColumnsForUserType(error);
    else
        loadEntriesForEnumType(error);
}

PostgresCatalogueQuery PostgresDatabaseTreeEntryType::detailsQuery(const QString &title) const
{
    return PostgresScriptText::query(title, {{QLatin1String("{TYPE_SCHEMA}"), m_schema},
                                             {QLatin1String("{TYPE_NAME}"), m_typeName}});
}

void PostgresDatabaseTreeEntryType::loadColumnsForUserType(DXError *error)
{
    const PostgresCatalogueQuery query =
        detailsQuery(QStringLiteral("Postgres_ListDetailsForCustomType"));
    List children;
    DXError failure;
    PostgresCatalogueReader::read(
        *databaseConnectionDetails(), query,
        [&](const DatabaseResultSet &row) { children.append(makeAttribute(row)); }, &failure);
    if (!failure)
        setChildEntries(children);
    PostgresTreeQuery::reportFailure(failure,
                                     QStringLiteral("postgres.databaseTree.loadColumnsForUserType"),
                                     query.text(), error);
}

void PostgresDatabaseTreeEntryType::loadEntriesForEnumType(DXError *error)
{
    List children;
    DXError failure;
    PostgresCatalogueReader::read(
        *databaseConnectionDetails(),
        detailsQuery(QStringLiteral("Postgres_ListDetailsForEnumType")),
        [&](const DatabaseResultSet &row) { children.append(makeLabel(row)); }, &failure);
    if (failure)
        DXError::report(error, failure);
    else
        setChildEntries(children);
}

// "not null" is fixed: the catalogue keeps no such property of attributes.
std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryType::makeAttribute(const DatabaseResultSet &row)
{
    using Column = PostgresDatabaseTreeEntryDatabaseTableColumn;
    auto attribute =
        std::make_shared<Column>(Column::Init{.columnName = row.stringForColumnIndex(0).toText(),
                                              .tableName = m_typeName,
                                              .schema = m_schema});
    attribute->setDetails(row.stringForColumnIndex(1).toText() + QLatin1String(", not null"));
    adoptChild(*attribute, databaseConnectionDetails());
    return attribute;
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryType::makeLabel(const DatabaseResultSet &row)
{
    auto label = std::make_shared<DXDatabaseTreeEntry>();
    label->setDisplayName(row.stringForColumnIndex(0).toText());
    label->setImageName(QStringLiteral("DatabaseTree-UserEnumerationEntry"));
    adoptChild(*label, databaseConnectionDetails());
    return label;
}
