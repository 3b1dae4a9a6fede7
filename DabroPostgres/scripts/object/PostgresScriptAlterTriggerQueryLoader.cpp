// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptAlterTriggerQueryLoader.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"

PostgresScriptAlterTriggerQueryLoader::PostgresScriptAlterTriggerQueryLoader(const Init &init)
    : m_internalTriggerName(init.triggerName)
    , m_internalTriggerSchema(init.schema)
    , m_internalTableName(init.table)
{ }

QString PostgresScriptAlterTriggerQueryLoader::script(const DabroDBC &details) const
{
    const QString table =
        PostgresScriptText::escapedPath(m_internalTriggerSchema, m_internalTableName);
    const PostgresCatalogueQuery query =
        PostgresScriptText::query(QStringLiteral("Postgres_AlterTrigger"),
                                  {{QLatin1String("{TRIGGER_NAME}"), m_internalTriggerName},
                                   {QLatin1String("{SCHEMA_NAME}"), m_internalTriggerSchema},
                                   {QLatin1String("{TABLE_NAME}"), m_internalTableName}});
    QString script = QStringLiteral("DROP TRIGGER %1 ON %2;\r\n")
                         .arg(PostgresScriptText::escaped(m_internalTriggerName), table);
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            const QString event = row.stringForColumnIndex(1).toText().toUpper();
            const QString timing = row.stringForColumnIndex(3).toText().toUpper();
            QString body = row.stringForColumnIndex(2).toText();
            body.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
            script += QStringLiteral("\r\nCREATE TRIGGER %1\r\n%2 %3 ON %4\r\n"
                                     "FOR EACH ROW\r\n%5;\r\n")
                          .arg(m_internalTriggerName, timing, event, table, body);
        },
        nullptr);
    return script;
}
