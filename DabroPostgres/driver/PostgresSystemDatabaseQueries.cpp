// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresSystemDatabaseQueries.h"

#include "driver/PostgresPropertyList.h"

QString PostgresSystemDatabaseQueries::queryByTitle(const QString &title)
{
    static const QHash<QString, QString> queries =
        PostgresPropertyList::dictionary(QStringLiteral("PostgreSQLBackingQueries"));
    return queries.value(title).trimmed();
}
