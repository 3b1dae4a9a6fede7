// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptDeleteDataFromTableQueryLoader.h"

#include "driver/PostgresDatabaseClient.h"
#include "scripts/PostgresScriptText.h"

namespace
{

QString condition(const QStringList &columns, const QList<DXValue> &values)
{
    Q_ASSERT(values.size() >= columns.size());
    QStringList terms;
    for (qsizetype i = 0; i < columns.size(); ++i)
        terms +=
            QStringLiteral("%1 = %2").arg(PostgresScriptText::escaped(columns[i]),
                                          PostgresDatabaseClient::escapeValue(values.value(i)));
    return terms.join(QLatin1String(" AND "));
}

} // namespace

PostgresScriptDeleteDataFromTableQueryLoader::PostgresScriptDeleteDataFromTableQueryLoader(
    const QString &tableName, const QStringList &usingColumns, const QList<QList<DXValue>> &data)
    : m_tableName(tableName)
    , m_columns(usingColumns)
    , m_data(data)
{ }

QString PostgresScriptDeleteDataFromTableQueryLoader::script(const DabroDBC &details) const
{
    Q_UNUSED(details)
    QStringList statements;
    for (const QList<DXValue> &row : m_data)
        statements += QStringLiteral("DELETE FROM %1 WHERE %2;")
                          .arg(PostgresScriptText::escaped(m_tableName), condition(m_columns, row));
    return statements.join(PostgresScriptText::lineBreak());
}
