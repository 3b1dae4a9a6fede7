// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How scripts are delivered, and what becomes of them when the server cannot be asked.
#include "DabroPostgres/driver/ServerAccess.h"
#include "DabroPostgres/scripts/ScriptReceiver.h"
#include "core/DXLogHelper.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptCatalogue.h"
#include "support/Background.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

ServerAccess::Record unreachable()
{
    auto record = std::make_shared<PostgresDatabaseConnectionDetails>();
    record->setHost(u"/nonexistent"_s);
    record->setUsername(u"nobody"_s);
    record->setDatabase(u"none"_s);
    return record;
}

TEST(ScriptLoaders, DeliverAtOnceWhereTheyOnlyWriteNames)
{
    const QStringList atOnce{u"table drop"_s, u"sequence drop"_s, u"index drop"_s,
                             u"database drop"_s};
    const auto record = unreachable();
    for (const auto &kind : PostgresScriptCatalogue().kinds()) {
        for (const QString &script : kind.scripts) {
            const qsizetype names = kind.object.count(u'.') + 1;
            const QString path =
                kind.object.startsWith(u'[') ? u"s"_s + u".n"_s.repeated(names - 1) : u"n"_s;
            const auto delivery = inBackground([&] {
                DXError error;
                const auto loader = PostgresScriptCatalogue().createLoader(
                    {.kind = kind.name, .script = script, .object = path, .values = {}}, *record,
                    &error);
                EXPECT_TRUE(loader) << error.description().toStdString();
                return loader ? ScriptReceiver::load(*loader, *record) : ScriptReceiver::Delivery();
            });
            const QString name = kind.name + u' ' + script;
            EXPECT_EQ(delivery.wasAtOnce, atOnce.contains(name)) << name.toStdString();
        }
    }
}

struct Failure
{
    const char *script;
    /// "%1" stands for the server's or the client library's words.
    const char *text;
    /// Of the error that is reported; empty for none.
    const char *domain;
    /// The log's line; empty for none.
    const char *line;
};

class FailingScript : public TestWithParam<Failure>
{
protected:
    static ScriptFile::Script script(const QString &name)
    {
        return {.kind = name.section(u' ', 0, 0),
                .script = name.section(u' ', 1, 1),
                .object = name.section(u' ', 2),
                .values = {}};
    }
};

TEST_P(FailingScript, TellsWhyOfAServerThatIsAway)
{
    const auto record = unreachable();
    DXError error;
    inBackground([&] { PostgresCatalogueReader::read(*record, u"SELECT 1"_s, {}, &error); });
    ASSERT_TRUE(error);
    QStringList domains;
    QVariantMap details;
    const auto errors = DXLogHelper::sharedInstance().observeErrors(
        [&](const DXError &reported, const QVariantMap &with) {
            domains += reported.domain();
            details = with;
        });
    const ServerAccess::LoggedTexts log;

    const QString text = inBackground([&] {
        return ScriptReceiver::script(script(QString::fromUtf8(GetParam().script)), *record);
    });

    EXPECT_EQ(text,
              QString::fromUtf8(GetParam().text).replace(u"%1"_s, error.description().trimmed()));
    EXPECT_EQ(domains.join(u','), QString::fromUtf8(GetParam().domain));
    EXPECT_EQ(details.value(u"Query"_s).toString().contains(u"SELECT"_s), !domains.isEmpty());
    if (*GetParam().line != '\0') {
        EXPECT_THAT(
            log.texts(),
            Contains(QString::fromUtf8(GetParam().line).replace(u"%1"_s, error.description())));
    }
}

TEST_P(FailingScript, IsNotLedAstrayByNames)
{
    const auto record = ServerAccess::record(PostgresCluster::shared());
    const QString hostile = u"'*/ DROP TABLE x; --"_s;
    const QString text = inBackground([&] {
        return ScriptReceiver::script(script(QString::fromUtf8(GetParam().script) + hostile),
                                      *record);
    });
    const QString comment = text.mid(text.indexOf(u"/*"_s));
    if (QString::fromUtf8(GetParam().text).contains(u"%1"_s)) {
        EXPECT_EQ(comment.indexOf(u"*/"_s), comment.size() - 2) << text.toStdString();
    }
}

constexpr char table[] = "/*\r\n* Error loading table definition.\r\n* %1\r\n*/";
constexpr char tableLine[] = "ScriptAlterTableQuery had no entries. Error: %1.";
constexpr char definitionLine[] = "Function_AlterQuery had no entries. Error: %1.";

INSTANTIATE_TEST_SUITE_P(
    Scripts, FailingScript,
    Values(Failure{"table create s.t", table, "postgres.queryLoader.createTableQuery", tableLine},
           Failure{"table drop-and-create s.t",
                   "DROP TABLE s.t;\r\n\r\n"
                   "/*\r\n* Error loading table definition.\r\n* %1\r\n*/",
                   "postgres.queryLoader.createTableQuery", tableLine},
           Failure{"table alter s.t", table, "postgres.queryLoader.alterTableQuery", tableLine},
           Failure{"table insert s.t", "/*\r\n* Error loading columns.\r\n* %1\r\n*/",
                   "postgres.queryLoader.scriptInsertToTableQuery", tableLine},
           Failure{"view create s.v",
                   "CREATE OR REPLACE VIEW s.v AS\r\n"
                   "/*\r\n* Error loading function definition.\r\n* %1\r\n*/",
                   "", definitionLine},
           Failure{"view alter s.v",
                   "CREATE OR REPLACE VIEW v AS\r\n"
                   "/*\r\n* Error loading function definition.\r\n* %1\r\n*/",
                   "", definitionLine},
           Failure{"materialized-view create s.v",
                   "CREATE MATERIALIZED VIEW s.v AS\r\n"
                   "/*\r\n* Error loading function definition.\r\n* %1\r\n*/",
                   "", definitionLine},
           Failure{"function alter s.f", "/*\r\n* Error loading function definition.\r\n* %1\r\n*/",
                   "", definitionLine},
           Failure{"sequence alter s.s", "ALTER SEQUENCE s.s\r\n\tSTART 0", "", ""},
           Failure{"type alter s.t", "CREATE TYPE s.t AS\r\n(\r\n\r\n);", "", ""},
           Failure{"enumeration alter s.t", "CREATE TYPE s.t AS ENUM\r\n(\r\n\r\n);", "", ""},
           Failure{"trigger alter s.t.g", "DROP TRIGGER g ON s.t;\r\n", "", ""}));

struct Lookup
{
    const char *kind;
    const char *object;
    /// What is wrong; empty for an object that exists.
    const char *refusal;
};

class LookedUpObject : public TestWithParam<Lookup>
{
protected:
    static void SetUpTestSuite()
    {
        PostgresCluster::shared().createDatabase(u"looked up"_s);
        PostgresCluster::shared().psql(
            u"CREATE SCHEMA s; CREATE TABLE s.t (id int PRIMARY KEY, \"it's\" int);"
            "CREATE VIEW v AS SELECT 1 AS one; CREATE TYPE mood AS ENUM ('a');"
            "CREATE FUNCTION f(a int) RETURNS int LANGUAGE sql AS 'SELECT 1';"
            "CREATE FUNCTION f(a text) RETURNS int LANGUAGE sql AS 'SELECT 2'"_s,
            u"looked up"_s);
    }
};

TEST_P(LookedUpObject, IsFoundOrMissed)
{
    const auto record = ServerAccess::record(PostgresCluster::shared(), u"looked up"_s);
    const QString kind = QString::fromUtf8(GetParam().kind);
    DXError error;
    const bool exists = inBackground([&] {
        return PostgresScriptCatalogue().objectExists(
            {.kind = kind,
             .script = {},
             .object = QString::fromUtf8(GetParam().object),
             .values = {}},
            *record, &error);
    });
    EXPECT_EQ(error.description().toStdString(), GetParam().refusal);
    EXPECT_EQ(exists, *GetParam().refusal == '\0');
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, LookedUpObject,
    Values(Lookup{"table", "s.t", ""}, Lookup{"row", "v", ""}, Lookup{"column", "s.t.it's", ""},
           Lookup{"function", "f(integer)", ""}, Lookup{"function", "public.f(a text)", ""},
           Lookup{"database", "\"looked up\"", ""}, Lookup{"index", "s.t_pkey", ""},
           Lookup{"table", "pg_catalog.pg_class", ""},
           Lookup{"table", "t", "There is no table \"t\" in the schema \"public\"."},
           Lookup{"table", "s.T", "There is no table \"T\" in the schema \"s\", but \"t\"."},
           Lookup{"table", "\"o'x\".t", "There is no schema \"o'x\"."},
           Lookup{"row", "t", "There is no table \"t\" in the search path."},
           Lookup{"table", "v", "\"public.v\" is a view, not a table."},
           Lookup{"type", "mood", "\"public.mood\" is an enumeration, not a type."},
           Lookup{"view", "pg_catalog.pg_tables",
                  "\"pg_catalog.pg_tables\" is a system view, not a view."},
           Lookup{"column", "s.t.ID", "There is no column \"ID\" in \"s.t\", but \"id\"."},
           Lookup{"trigger", "s.t.id", "There is no trigger \"id\" in \"s.t\"."},
           Lookup{"trigger", "s.x.g", "There is no table \"x\" in the schema \"s\"."},
           Lookup{"function", "F(text)",
                  "There is no function \"F(text)\" in the schema \"public\", but "
                  "\"f(a integer)\", \"f(a text)\"."},
           Lookup{"database", "SHOP", "There is no database \"SHOP\"."},
           Lookup{"cat", "x", "There are no scripts for the kind \"cat\"."}));

// Only the script that creates a table tries again when its connection breaks.
TEST(ScriptLoaders, OutliveABrokenConnectionWhereTheyMay)
{
    PostgresCluster &cluster = PostgresCluster::shared();
    cluster.createDatabase(u"broken"_s);
    cluster.psql(u"CREATE TABLE t (id int)"_s, u"broken"_s);
    const auto record = ServerAccess::record(cluster, u"broken"_s);
    for (const auto &[script, isRepeated] : {std::pair(u"create"_s, true), {u"alter"_s, false}}) {
        const auto locker = ServerAccess::connected(record);
        EXPECT_FALSE(ServerAccess::errorOf(
            *locker, u"BEGIN; LOCK TABLE pg_catalog.pg_attrdef IN ACCESS EXCLUSIVE MODE"_s));
        QString text;
        auto loading = ServerAccess::start([&, name = script] {
            text = ScriptReceiver::script(
                {.kind = u"table"_s, .script = name, .object = u"public.t"_s, .values = {}},
                *record);
            return DXError();
        });
        const QString waiting = u"FROM pg_stat_activity WHERE wait_event_type = 'Lock' "
                                "AND datname = 'broken'"_s;
        const auto isWaiting = [&] {
            return cluster.psql(u"SELECT count(*) "_s + waiting).trimmed() == u"1"_s;
        };
        EXPECT_TRUE(DXWait::until(isWaiting));
        cluster.psql(u"SELECT pg_terminate_backend(pid) "_s + waiting);
        EXPECT_TRUE(
            DXWait::until([&, waitsAgain = isRepeated] { return isWaiting() == waitsAgain; }));
        EXPECT_FALSE(ServerAccess::errorOf(*locker, u"COMMIT"_s));
        EXPECT_FALSE(ServerAccess::finish(loading));
        EXPECT_EQ(text.contains(u"Error loading"_s), !isRepeated) << text.toStdString();
        EXPECT_EQ(text.contains(u"id integer"_s), isRepeated);
    }
}

} // namespace
