// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresTreeQuery.h"

#include "core/DXLogHelper.h"

#include <QVersionNumber>

QString PostgresTreeQuery::titleFor(const QString &title, const QString &version)
{
    const auto number = QVersionNumber::fromString(version);
    const bool isOld = !number.isNull() && number < QVersionNumber(8, 4);
    return isOld ? title + QStringLiteral("_Pre8.4") : title;
}

void PostgresTreeQuery::reportFailure(const DXError &failure, const QString &domain,
                                      const QString &query, DXError *error)
{
    if (!failure)
        return;
    const DXError inDomain = failure.withDomain(domain);
    DXLogHelper::sharedInstance().logError(inDomain, {{QStringLiteral("Query"), query}});
    DXError::report(error, inDomain);
}
