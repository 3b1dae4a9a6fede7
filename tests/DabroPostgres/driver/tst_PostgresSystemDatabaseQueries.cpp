// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresSystemDatabaseQueries.h"

#include "driver/PostgresCatalogueQuery.h"
#include "driver/PostgresPropertyList.h"
#include "support/PrintQt.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <pg_query.h>

namespace
{

QDir queryFolder()
{
    return QDir(QStringLiteral(DX_QUERY_FOLDER));
}

QStringList titlesOnDisk()
{
    QStringList titles;
    const QStringList files = queryFolder().entryList(QDir::Files, QDir::Name);
    for (const QString &file : files)
        titles.append(QFileInfo(file).completeBaseName());
    return titles;
}

/// The titles whose texts are for the user to edit: statements that change a database.
bool isTemplate(const QString &title)
{
    return title.startsWith(QLatin1String("New")) || title == QLatin1String("DropDatabase");
}

/// The queries as their callers run them, for some table or the like of this name, by title.
QMap<QString, QString> filledQueries(const QString &name = QStringLiteral("pg_database"))
{
    static const QRegularExpression placeholder(QStringLiteral("\\{([A-Z_]+)\\}"));
    QMap<QString, QString> queries;
    const QStringList titles = titlesOnDisk();
    for (const QString &title : titles) {
        if (isTemplate(title))
            continue;
        QString query = PostgresSystemDatabaseQueries::queryByTitle(title);
        query.remove(QStringLiteral("{SCHEMA_CLAUSE}"));
        query.replace(placeholder, name);
        queries.insert(title, query);
    }
    return queries;
}

/// The functions and tables in a parse tree that are not named in pg_catalog.
void collectUnqualified(const QJsonValue &node, QStringList &found)
{
    const QJsonArray elements = node.toArray();
    for (const auto &element : elements)
        collectUnqualified(element, found);
    const QJsonObject object = node.toObject();
    const QJsonArray function = object.value(u"funcname").toArray();
    const auto part = [&](qsizetype i) {
        return function[i].toObject().value(u"String").toObject().value(u"sval").toString();
    };
    if (!function.isEmpty() && (function.size() < 2 || part(0) != QLatin1String("pg_catalog")))
        found.append(part(function.size() - 1));
    if (object.contains(u"relname")
        && object.value(u"schemaname").toString() != QLatin1String("pg_catalog"))
        found.append(object.value(u"relname").toString());
    for (const auto &member : object)
        collectUnqualified(member, found);
}

void collectCommonTables(const QJsonValue &node, QStringList &found)
{
    const QJsonArray elements = node.toArray();
    for (const auto &element : elements)
        collectCommonTables(element, found);
    const QJsonObject object = node.toObject();
    if (object.contains(u"ctename"))
        found.append(object.value(u"ctename").toString());
    for (const auto &member : object)
        collectCommonTables(member, found);
}

/// Names in sql that a hostile schema could stand in for; an unreadable text is its own fault.
QStringList hijackableNames(const QString &sql)
{
    const PgQueryParseResult result = pg_query_parse(sql.toUtf8().constData());
    QStringList found;
    if (result.error) {
        found.append(QString::fromUtf8(result.error->message));
    } else {
        const QJsonObject tree = QJsonDocument::fromJson(result.parse_tree).object();
        QStringList commonTables;
        collectCommonTables(tree, commonTables);
        collectUnqualified(tree, found);
        found.removeIf([&](const QString &name) { return commonTables.contains(name); });
    }
    pg_query_free_parse_result(result);
    found.sort();
    return found;
}

/// What sql does, whatever its constants and comments; the message for one that cannot be read.
std::string meaningOf(const QString &sql)
{
    const PgQueryFingerprintResult result = pg_query_fingerprint(sql.toUtf8().constData());
    std::string meaning = result.error ? result.error->message : result.fingerprint_str;
    pg_query_free_fingerprint_result(result);
    return meaning;
}

TEST(PostgresSystemDatabaseQueries, holdsEveryFileOfTheFolderTrimmed)
{
    const QStringList titles = titlesOnDisk();
    ASSERT_FALSE(titles.isEmpty());
    const auto stored =
        PostgresPropertyList::dictionary(QStringLiteral("PostgreSQLBackingQueries"));
    EXPECT_EQ(stored.size(), titles.size()) << "a file is missing in the build";
    for (const QString &title : titles) {
        QFile file(queryFolder().filePath(title + QStringLiteral(".sql")));
        ASSERT_TRUE(file.open(QFile::ReadOnly)) << title.toStdString();
        const QString text = QString::fromUtf8(file.readAll());
        EXPECT_EQ(PostgresSystemDatabaseQueries::queryByTitle(title), text.trimmed());
        EXPECT_EQ(stored.value(title), text);
    }
}

TEST(PostgresSystemDatabaseQueries, answersNothingForAnUnknownTitle)
{
    EXPECT_TRUE(PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("Nothing")).isNull());
    EXPECT_TRUE(PostgresPropertyList::dictionary(QStringLiteral("Missing")).isEmpty());
    EXPECT_TRUE(PostgresPropertyList::array(QStringLiteral("Missing")).isEmpty());
    EXPECT_TRUE(PostgresPropertyList::array(QStringLiteral("PostgreSQLBackingQueries")).isEmpty());
}

// Names are placed where nothing but a quote or a backslash in them could do harm.
TEST(PostgresSystemDatabaseQueries, keepTheirMeaningForEveryPlainName)
{
    EXPECT_NE(meaningOf(QStringLiteral("SELECT 1")), meaningOf(QStringLiteral("SELECT a FROM t")));
    const QString name = QStringLiteral("a\n); DROP TABLE t; -- \" $$ */ /* {TABLE_NAME} \u2019");
    ASSERT_TRUE(PostgresCatalogueQuery::isPlainName(name));
    const QMap<QString, QString> usual = filledQueries();
    const QMap<QString, QString> odd = filledQueries(name);
    for (auto query = usual.begin(); query != usual.end(); ++query)
        EXPECT_EQ(meaningOf(odd.value(query.key())), meaningOf(*query))
            << query.key().toStdString();
    for (const char *hostile : {"o'clock", "'", "a\\", "\\"})
        EXPECT_FALSE(PostgresCatalogueQuery::isPlainName(QString::fromLatin1(hostile)));
}

TEST(PostgresSystemDatabaseQueries, namesNothingThatAHostileSchemaCouldReplace)
{
    EXPECT_EQ(hijackableNames(QStringLiteral("SELECT version(), evil.f(pg_catalog.upper('a')) "
                                             "FROM t, pg_catalog.pg_class")),
              QStringList({QStringLiteral("f"), QStringLiteral("t"), QStringLiteral("version")}));
    EXPECT_TRUE(hijackableNames(QStringLiteral("WITH t AS (SELECT pg_catalog.now() AS \"now()\") "
                                               "SELECT 'f()' FROM t"))
                    .isEmpty());
    const QMap<QString, QString> queries = filledQueries();
    for (auto query = queries.begin(); query != queries.end(); ++query)
        EXPECT_EQ(hijackableNames(*query), QStringList()) << query.key().toStdString();
}

} // namespace
