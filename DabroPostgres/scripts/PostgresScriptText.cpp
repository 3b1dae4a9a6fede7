// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresScriptText.h"

#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresSystemDatabaseQueries.h"

#include <algorithm>

QString PostgresScriptText::lineBreak()
{
    return QStringLiteral("\r\n");
}

QString PostgresScriptText::escaped(const QString &name)
{
    return PostgresDatabaseClient::escapeTableNameIfRequired(name);
}

QString PostgresScriptText::escapedPath(const QString &schema, const QString &name)
{
    return escaped(schema) + u'.' + escaped(name);
}

PostgresCatalogueQuery PostgresScriptText::query(const QString &title,
                                                 const QList<Replacement> &replacements)
{
    const QString text = PostgresSystemDatabaseQueries::queryByTitle(title);
    // Where each placeholder comes next; behind the end where it does not.
    QList<qsizetype> next(replacements.size(), -1);
    QString filled;
    filled.reserve(text.size() + 64);
    for (qsizetype at = 0;;) {
        for (qsizetype i = 0; i < next.size(); ++i) {
            if (next[i] < at)
                next[i] = text.indexOf(replacements[i].placeholder, at);
            if (next[i] < 0)
                next[i] = text.size();
        }
        const auto first = std::min_element(next.cbegin(), next.cend());
        const qsizetype end = first == next.cend() ? text.size() : *first;
        filled += QStringView(text).sliced(at, end - at);
        if (end == text.size())
            break;
        const Replacement &found = replacements[first - next.cbegin()];
        filled += found.text;
        at = end + found.placeholder.size();
    }
    const bool isPlain = std::all_of(replacements.begin(), replacements.end(),
                                     [](const Replacement &each) { return each.isPlain; });
    return isPlain ? PostgresCatalogueQuery::plain(filled) : PostgresCatalogueQuery(filled);
}

QString PostgresScriptText::errorComment(QLatin1String what, const DXError &error)
{
    // Servers repeat names of objects in their messages; none of them may end the comment.
    const QString description =
        error.description().trimmed().replace(QLatin1String("*/"), QLatin1String("* /"));
    return QStringLiteral("/*\r\n* Error loading %1.\r\n* %2\r\n*/").arg(what, description);
}

QString PostgresScriptText::reportedFailure(QLatin1String what, const DXError &error,
                                            const QString &domain, const QString &query)
{
    DXLog(QStringLiteral("ScriptAlterTableQuery had no entries. Error: %1.")
              .arg(error.description()));
    PostgresDatabaseClient::reportError(error.withDomain(domain),
                                        {{QStringLiteral("Query"), query}});
    return errorComment(what, error);
}

QString PostgresScriptText::definition(const DabroDBC &details, const PostgresCatalogueQuery &query,
                                       const QString &schema)
{
    QString definition;
    bool isFromSchema = false;
    DXError error;
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            const bool isHere =
                row.stringForColumn(QStringLiteral("schema_name")).toText() == schema;
            if (isHere || !isFromSchema)
                definition = row.stringForColumnIndex(0).toText();
            isFromSchema = isFromSchema || isHere;
        },
        &error);
    if (!error)
        return definition;
    DXLog(
        QStringLiteral("Function_AlterQuery had no entries. Error: %1.").arg(error.description()));
    return errorComment(QLatin1String("function definition"), error);
}
