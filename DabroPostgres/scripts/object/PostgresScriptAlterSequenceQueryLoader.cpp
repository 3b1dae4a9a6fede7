// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptAlterSequenceQueryLoader.h"

#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"

namespace
{

qint64 nextValue(const DabroDBC &details, const QString &path)
{
    // nextval() has to be let write, but nothing else that a name may have put into the statement.
    using Access = PostgresCatalogueReader::Access;
    const bool isPlain = !path.contains(u'\'') && !path.contains(u'\\');
    const Access access = isPlain ? Access::Writing : Access::ReadOnly;
    const QString query = QStringLiteral("SELECT nextval('%1')").arg(path);
    qint64 value = 0;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *error) {
            PostgresCatalogueReader::read(
                client, query,
                [&](const DatabaseResultSet &row) {
                    value = row.stringForColumnIndex(0).toInteger();
                },
                error, access);
        },
        details, nullptr);
    return value;
}

} // namespace

PostgresScriptAlterSequenceQueryLoader::PostgresScriptAlterSequenceQueryLoader(const Init &init)
    : m_sequenceName(init.sequenceName)
    , m_schema(init.schema)
{ }

QString PostgresScriptAlterSequenceQueryLoader::script(const DabroDBC &details) const
{
    const QString path = PostgresScriptText::escapedPath(m_schema, m_sequenceName);
    return QStringLiteral("ALTER SEQUENCE %1\r\n\tSTART %2")
        .arg(path, QString::number(nextValue(details, path)));
}
