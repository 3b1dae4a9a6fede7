// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cli/CliRun.h"
#include "support/PostgresCluster.h"

#include <gmock/gmock.h>

using namespace testing;

namespace
{

class CliTreeTest : public Test
{
protected:
    static void SetUpTestSuite()
    {
        PostgresCluster::shared().createDatabase(u"shop"_qs);
        PostgresCluster::shared().psql(
            u"CREATE SCHEMA crm; CREATE TABLE crm.\"Two\tWords\" (id serial PRIMARY KEY);"
            "CREATE VIEW words AS SELECT 1 AS one;"
            "CREATE TYPE \"it's\" AS (a int)"_qs,
            u"shop"_qs);
    }
    static CliRun::Init init(const QStringList &arguments)
    {
        QProcessEnvironment environment = CliRun::environmentFor(PostgresCluster::shared());
        environment.insert(u"PGDATABASE"_qs, u"shop"_qs);
        return {.arguments = arguments, .environment = environment};
    }
};

TEST_F(CliTreeTest, PrintsTheTreeAndWhatASearchFinds)
{
    struct Case
    {
        QStringList arguments;
        int status;
        const char *output;
        const char *error;
    };
    const QStringList table = {u"shop"_qs, u"Tables"_qs, u"crm.Two\tWords"_qs};
    const QList<Case> cases = {
        {{u"tree"_qs, u"--depth=1"_qs}, 0, "\n  shop\n", ""},
        {{u"tree"_qs},
         0,
         "\n    Tables\n      crm.Two\\tWords\n    Views\n      words\n    Materialized Views\n",
         ""},
        {QStringList{u"tree"_qs, u"--kinds"_qs} + table, 0,
         "crm.Two\\tWords  [Table]\n  id  integer, not null  [PK]\n    "
         "crm.Two\\tWords_id_seq  [UserSequence]\n  Indexes  [Folder]\n",
         ""},
        {QStringList{u"tree"_qs, u"--menus"_qs} + table + QStringList(u"Indexes"_qs), 0,
         "Indexes\n  > Refresh\n  Two\\tWords_pkey\n    > Drop index\n", ""},
        {{u"tree"_qs, u"shop"_qs, u"Tabels"_qs},
         2,
         "",
         "There is no \"Tabels\" below \"shop\", which holds: Tables, Views, "},
        {{u"tree"_qs, u"shop"_qs, u"Types"_qs, u"it's"_qs}, 1, "it's  User type\n  ERROR:", ""},
        {{u"search"_qs, u"WORDS"_qs}, 0, "\n  shop\n    crm.Two\\tWords\n    public.words\n", ""},
        {{u"search"_qs, u"nothing"_qs}, 0, "", "Nothing is called like"},
        {{u"tree"_qs, u"-h"_qs, u"/nonexistent"_qs}, 3, "", "/nonexistent"},
    };
    for (const Case &each : cases) {
        CliRun run(init(each.arguments));
        EXPECT_EQ(run.wait(), each.status) << each.arguments.join(u' ').toStdString();
        EXPECT_THAT(run.output().toStdString(), HasSubstr(each.output));
        EXPECT_THAT(run.errors().toStdString(), HasSubstr(each.error));
        EXPECT_EQ(run.output().isEmpty(), *each.output == '\0');
        EXPECT_EQ(run.errors().isEmpty(), *each.error == '\0') << run.errors().toStdString();
    }
}

} // namespace
