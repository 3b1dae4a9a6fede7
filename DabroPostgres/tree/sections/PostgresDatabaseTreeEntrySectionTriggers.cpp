// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionTriggers.h"

#include "scripts/PostgresScriptText.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryTrigger.h"

#include <QRegularExpression>

using Trigger = PostgresDatabaseTreeEntryTrigger;

PostgresDatabaseTreeEntrySectionTriggers::PostgresDatabaseTreeEntrySectionTriggers(const Init &init)
    : PostgresDatabaseTreeEntrySection(QString())
    , m_init(init)
{ }

QString PostgresDatabaseTreeEntrySectionTriggers::targetProcedureOf(const QString &definition)
{
    static const QRegularExpression expression(
        QStringLiteral("EXEC(UTE)?\\s+PROCEDURE\\s+([^\\(]+)"),
        QRegularExpression::CaseInsensitiveOption);
    return expression.match(definition).captured(2);
}

QString PostgresDatabaseTreeEntrySectionTriggers::displayName() const
{
    return PostgresTreeText::tr("Triggers");
}

DXMenu PostgresDatabaseTreeEntrySectionTriggers::menu()
{
    return PostgresTreeMenu(*this).newQuery().separator().refresh().menu();
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntrySectionTriggers::query(const QString &serverVersion) const
{
    Q_UNUSED(serverVersion)
    return PostgresScriptText::query(QStringLiteral("Postgres_ListTriggersForTable"),
                                     {{QLatin1String("{TABLE_NAME}"), m_init.tableName},
                                      {QLatin1String("{TABLE_SCHEMA}"), m_init.schema}});
}

QString PostgresDatabaseTreeEntrySectionTriggers::errorDomain() const
{
    return QStringLiteral("postgres.databaseTree.loadTriggers");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntrySectionTriggers::makeEntry(const DatabaseResultSet &row,
                                                    const Naming &naming) const
{
    return std::make_shared<Trigger>(
        Trigger::Init{.triggerName = text(row, 0),
                      .schema = m_init.schema,
                      .tableName = m_init.tableName,
                      .targetProcedure = targetProcedureOf(text(row, 1)),
                      .defaultSchema = naming.defaultSchema});
}

std::optional<QString>
PostgresDatabaseTreeEntrySectionTriggers::sortName(const DXDatabaseTreeEntry &entry) const
{
    return static_cast<const Trigger &>(entry).triggerName();
}
