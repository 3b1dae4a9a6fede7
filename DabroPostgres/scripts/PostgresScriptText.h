// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "driver/PostgresCatalogueQuery.h"

#include <QList>
#include <QString>

class DabroDBC;

/// What the texts of scripts have in common.
namespace PostgresScriptText
{

/// The line break of scripts.
QString lineBreak();
/// A name as scripts write it, in double quotes where it needs them. [any]
QString escaped(const QString &name);
/// Schema and name as scripts write them, joined by a dot. [any]
QString escapedPath(const QString &schema, const QString &name);

/// A placeholder with its braces, and what takes its place.
struct Replacement
{
    QLatin1String placeholder;
    QString text;
    /// Whether text leaves the query what it is. Not to be guessed for more than a name.
    bool isPlain = PostgresCatalogueQuery::isPlainName(text);
};
/// The named query called title with every placeholder replaced. What is put in is not searched
/// for placeholders again. [any]
PostgresCatalogueQuery query(const QString &title, const QList<Replacement> &replacements);

/// The comment that stands in for what could not be loaded: "table definition", "columns", and so
/// on. [any]
QString errorComment(QLatin1String what, const DXError &error);
/// Logs that query failed with error, for the user too, in domain; answers errorComment(). [any]
QString reportedFailure(QLatin1String what, const DXError &error, const QString &domain,
                        const QString &query);

/// The definition of a view or function: the first column of the last row that query returns, or
/// the comment about its failure. Among rows that say in a column "schema_name" where their object
/// lives, those of schema win. [background]
QString definition(const DabroDBC &details, const PostgresCatalogueQuery &query,
                   const QString &schema = {});

} // namespace PostgresScriptText
