// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresDataStrutures.h"

#include "DabroPostgres/driver/ServerAccess.h"
#include "support/Background.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

QStringList describe(const QList<PostgresSchemaAndTable> &tables)
{
    QStringList lines;
    for (const PostgresSchemaAndTable &table : tables) {
        QString line = table.description() + u':';
        for (const PostgresColumn &column : table.columns)
            line += u' ' + column.columnName + u' ' + column.dataType
                    + (column.isNullable ? u"?"_s : QString())
                    + (column.isPrimaryKey ? u"!"_s : QString());
        lines += line;
    }
    return lines;
}

TEST(PostgresDataStrutures, ListsTablesWithTheirColumns)
{
    PostgresCluster &cluster = PostgresCluster::shared();
    cluster.createDatabase(u"structures"_s);
    cluster.psql(u"CREATE SCHEMA shop;"
                 "CREATE TABLE shop.a (x int, gone int, id int, PRIMARY KEY (id, x));"
                 "ALTER TABLE shop.a DROP COLUMN gone;"
                 "CREATE TABLE shop.\"Two Words\" (name varchar(20) NOT NULL, tags text[]);"
                 "CREATE TABLE shop.two (a int); CREATE TABLE shop.\"TWO\" (b int);"
                 "CREATE VIEW shop.v AS SELECT 1;"_s,
                 u"structures"_s);
    DXError error;
    const auto record = ServerAccess::record(cluster, u"structures"_s);
    const auto tables =
        inBackground([&] { return PostgresDataStrutures::loadSchemaAndTable(*record, &error); });
    EXPECT_FALSE(error) << error.description().toStdString();
    EXPECT_THAT(describe(tables),
                ElementsAre(u"shop.TWO: b integer?"_s,
                            u"shop.Two Words: name character varying(20) tags text[]?"_s,
                            u"shop.a: x integer! id integer!"_s, u"shop.two: a integer?"_s));
}

TEST(PostgresDataStrutures, TakeNamesForOneThatDifferInCase)
{
    PostgresCluster &cluster = PostgresCluster::shared();
    cluster.createDatabase(u"alike"_s);
    cluster.psql(u"CREATE SCHEMA \"Shop\"; CREATE SCHEMA shop;"
                 "CREATE TABLE \"Shop\".\"Items\" (a int); CREATE TABLE shop.items (b int);"_s,
                 u"alike"_s);
    DXError error;
    const auto record = ServerAccess::record(cluster, u"alike"_s);
    const auto tables =
        inBackground([&] { return PostgresDataStrutures::loadSchemaAndTable(*record, &error); });
    EXPECT_THAT(describe(tables), ElementsAre(u"Shop.Items: a integer? b integer?"_s));

    record->setHost(u"/nonexistent"_s);
    const auto none =
        inBackground([&] { return PostgresDataStrutures::loadSchemaAndTable(*record, &error); });
    EXPECT_TRUE(none.isEmpty());
    EXPECT_TRUE(error);
}

} // namespace
