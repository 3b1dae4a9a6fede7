// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/tree/CatalogueTree.h"
#include "core/DXLogHelper.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresConnectionHelper.h"
#include "support/Background.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "tree/DXDatabaseNotificationTable.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionSchemas.h"

#include <gmock/gmock.h>

using namespace testing;

namespace
{

using Reload = DXDatabaseTreeEntry::Reload;

// The errors of one domain that are logged while it lives, with the query of each.
class Failures final
{
public:
    explicit Failures(const QString &domain)
        : m_observer(DXLogHelper::sharedInstance().observeErrors(
            [this, domain](const DXError &error, const QVariantMap &details) {
                const std::lock_guard lock(m_mutex);
                if (error.domain() == domain)
                    m_queries += details.value(u"Query"_qs).toString();
            }))
    { }
    QStringList queries() const
    {
        const std::lock_guard lock(m_mutex);
        return m_queries;
    }

private:
    Q_DISABLE_COPY_MOVE(Failures)

    mutable std::mutex m_mutex;
    QStringList m_queries;
    std::shared_ptr<void> m_observer;
};

QString imagesBelow(const DXDatabaseTreeEntry &entry)
{
    QStringList images;
    for (const auto &child : *entry.childEntries())
        images += child->imageName().section(u'-', 1);
    return images.join(u' ');
}

class CatalogueTreeLoads : public Test
{
protected:
    static PostgresCluster &cluster() { return PostgresCluster::shared(); }
    static ServerAccess::Record record(const QString &database)
    {
        return ServerAccess::record(cluster(), database);
    }
    // A database for this test alone.
    static ServerAccess::Record recordOfNew(const QString &database, const QString &sql)
    {
        cluster().createDatabase(database);
        cluster().psql(sql, database);
        return record(database);
    }
    static void groupBySchema(const DabroDBC &details, bool isGrouped)
    {
        PostgresConnectionHelper::sharedInstance().setGroupBySchemaForDBC(isGrouped, details);
    }
};

TEST_F(CatalogueTreeLoads, ListsTheDatabasesOrTheOneThatIsNamed)
{
    for (const QString &name : {u"b"_qs, u"A"_qs, u"it's \"odd\""_qs})
        cluster().createDatabase(name);
    CatalogueTree all(record({}));
    EXPECT_EQ(all.root()->serverVersion(), u"Loading version"_qs);
    all.load(all.root());
    EXPECT_THAT(CatalogueTree::namesBelow(all.root()),
                IsSupersetOf({u"A"_qs, u"b"_qs, u"it's \"odd\""_qs}));
    QStringList sorted = CatalogueTree::namesBelow(all.root());
    sorted.sort(Qt::CaseInsensitive);
    EXPECT_EQ(CatalogueTree::namesBelow(all.root()), sorted);
    EXPECT_EQ(all.root()->allDatabaseNames().size(), sorted.size());
    EXPECT_TRUE(all.root()->serverVersion().startsWith(u"PostgreSQL "_qs));
    EXPECT_EQ(all.node({u"it's \"odd\""_qs})->databaseConnectionDetails()->database(),
              u"it's \"odd\""_qs);

    // Also when it cannot be opened: its own loads say why.
    const Failures failures(u"postgres.databaseTree.loadTables"_qs);
    CatalogueTree missing(record(u"no such"_qs));
    const auto tables = missing.node({u"no such"_qs, u"Tables"_qs});
    EXPECT_EQ(missing.root()->allDatabaseNames(), QStringList(u"no such"_qs));
    missing.load(tables);
    EXPECT_THAT(
        CatalogueTree::namesBelow(tables),
        ElementsAre(ResultOf(
            [](const QString &text) { return text.contains(u"\"no such\" does not exist"_qs); },
            true)));
    EXPECT_THAT(
        failures.queries(),
        ElementsAre(ResultOf([](const QString &query) { return query.size() > 100; }, true)));
}

TEST_F(CatalogueTreeLoads, NamesTheServerByAliasOrHost)
{
    const auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(u"db1"_qs);
    details->setUsername(u"dba"_qs);
    const CatalogueTree tree(details);
    EXPECT_EQ(tree.root()->displayName(), u"db1 (dba)"_qs);
    EXPECT_EQ(tree.root()->tableCellIdentifier(), u"HeaderCell"_qs);
    EXPECT_EQ(tree.root()->tableCellHeight(), 34);
    details->setAlias(u"Shop"_qs);
    details->setSshTunnelModel(std::make_shared<DXSSHTunnelModel>());
    EXPECT_EQ(tree.root()->displayName(), u"Shop (dba)"_qs);
    EXPECT_EQ(tree.root()->tableCellIdentifier(), u"HeaderCellSSHTunnel"_qs);
    EXPECT_EQ(tree.root()->tableCellHeight(), 45);
}

TEST_F(CatalogueTreeLoads, OutlivesAServerThatIsKilledUnderIt)
{
    PostgresCluster own;
    CatalogueTree tree(ServerAccess::record(own));
    const auto tables = tree.node({u"postgres"_qs, u"Tables"_qs});
    const auto views = tree.node({u"postgres"_qs, u"Views"_qs});
    const auto functions = tree.node({u"postgres"_qs, u"Functions"_qs});
    own.psql(u"CREATE FUNCTION f() RETURNS int LANGUAGE sql AS 'SELECT 1'"_qs);
    tree.load(functions);
    tree.load(views);
    EXPECT_EQ(CatalogueTree::namesBelow(views), QStringList());
    const auto locker = ServerAccess::connected(ServerAccess::record(own));
    EXPECT_FALSE(ServerAccess::errorOf(
        *locker, u"BEGIN; LOCK TABLE pg_catalog.pg_depend IN ACCESS EXCLUSIVE MODE"_qs));

    EXPECT_TRUE(tables->loadEntriesAsync(Reload::IfNeeded));
    EXPECT_TRUE(tables->loadEntriesAsync(Reload::Force)) << "dropped: one is under way";
    EXPECT_TRUE(DXWait::until([&own] {
        return own.psql(u"SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock' "
                        "AND query LIKE '%table_schema%'"_qs)
                   .trimmed()
               == u"1"_qs;
    }));
    own.killHard();
    EXPECT_TRUE(DXWait::until([&tables] { return !tables->isLoadingAsync(); }));
    CatalogueTree late(ServerAccess::record(own));
    late.load(late.root());
    EXPECT_EQ(imagesBelow(*late.root()), u"Error"_qs);
    EXPECT_EQ(late.root()->serverVersion(), u"Failed to load version"_qs);
    EXPECT_EQ(imagesBelow(*tables), u"Error"_qs);
    tree.reload(views);
    EXPECT_EQ(imagesBelow(*views), u"Error"_qs);
    tree.reload(functions);
    EXPECT_EQ(CatalogueTree::namesBelow(functions), QStringList(u"f"_qs)) << "kept";

    own.start();
    own.psql(u"CREATE TABLE t (); CREATE VIEW v AS SELECT 1"_qs);
    tree.reload(tables);
    tree.reload(views);
    EXPECT_EQ(CatalogueTree::namesBelow(tables), QStringList(u"t"_qs));
    EXPECT_EQ(CatalogueTree::namesBelow(views), QStringList(u"v"_qs));
}

TEST_F(CatalogueTreeLoads, ShowsOneWhoMayDoNothingWhatThereIs)
{
    const auto details =
        recordOfNew(u"private"_qs,
                    u"CREATE ROLE outsider LOGIN; CREATE SCHEMA s; CREATE TYPE s.e AS ENUM ('x');"
                    "CREATE TABLE s.t (id serial PRIMARY KEY, e s.e);"
                    "CREATE MATERIALIZED VIEW s.m AS SELECT 1 AS one;"
                    "REVOKE ALL ON SCHEMA public FROM PUBLIC"_qs);
    CatalogueTree superuser(details);
    superuser.load(superuser.root(), 10);
    details->setUsername(u"outsider"_qs);
    CatalogueTree outsider(details);
    outsider.load(outsider.root(), 10);
    const auto text = [](CatalogueTree &tree) {
        return CatalogueTree::text(tree.node({u"private"_qs}));
    };
    EXPECT_EQ(text(outsider), text(superuser));
    EXPECT_TRUE(text(outsider).contains(u"s.t_id_seq"_qs));
}

TEST_F(CatalogueTreeLoads, KeepsItsFoldersWhenATableIsGone)
{
    const auto details = recordOfNew(u"gone"_qs, u"CREATE TABLE a (); CREATE TABLE b (id int)"_qs);
    CatalogueTree tree(details);
    const auto gone = tree.node({u"gone"_qs, u"Tables"_qs, u"b"_qs});
    cluster().psql(u"DROP TABLE b"_qs, u"gone"_qs);
    tree.load(gone, 2);
    EXPECT_EQ(CatalogueTree::namesBelow(gone), (QStringList{u"Indexes"_qs, u"Triggers"_qs}));
    const auto tables = gone->parent();
    tree.reload(tables);
    EXPECT_EQ(CatalogueTree::namesBelow(tables), QStringList(u"a"_qs));
}

TEST_F(CatalogueTreeLoads, ShowsTablesOfEveryWidthAndName)
{
    const QString longName(63, u'n');
    const auto details = recordOfNew(
        u"names"_qs,
        u"CREATE TABLE \"%1\" (); CREATE TABLE \"line\nbreak\" (\"a\tb\" int); CREATE TABLE \"🍒 "
        u"x\" ();"
        "CREATE TABLE \"1.5\" (a int); CREATE TABLE \"back\\slash\" (a int);"
        "DO $$BEGIN EXECUTE 'CREATE TABLE wide (' || (SELECT string_agg('c' || n || ' int', ',') "
        "FROM generate_series(1, 1600) n) || ')'; END$$"_qs.arg(longName));
    CatalogueTree tree(details);
    const QList<std::pair<QString, qsizetype>> tables = {
        {u"1.5"_qs, 1}, {u"back\\slash"_qs, 1}, {u"line\nbreak"_qs, 1},
        {longName, 0},  {u"wide"_qs, 1600},     {u"🍒 x"_qs, 0},
    };
    const auto section = tree.node({u"names"_qs, u"Tables"_qs});
    tree.load(section, 2);
    QStringList names;
    for (const auto &[name, columns] : tables) {
        names += name;
        EXPECT_EQ(tree.node({u"names"_qs, u"Tables"_qs, name})->childEntries()->size(), columns + 2)
            << name.toStdString();
    }
    EXPECT_EQ(CatalogueTree::namesBelow(section), names);
}

TEST_F(CatalogueTreeLoads, LetsHostileNamesFailAndDoNothingElse)
{
    const QString hostile = u"x'; DROP TABLE victim; SELECT '"_qs;
    const auto details = recordOfNew(
        u"hostile"_qs,
        u"CREATE TABLE victim (); CREATE SCHEMA \"%1\"; CREATE TABLE \"%1\".\"%1\" ();"
        "CREATE TYPE \"%1\" AS (a int); CREATE TYPE \"{TYPE_NAME}\" AS (b int)"_qs.arg(hostile));
    const Failures failures(u"postgres.databaseTree.loadViews"_qs);
    groupBySchema(*details, false);
    CatalogueTree bySchema(details);
    const auto schema = bySchema.node({u"hostile"_qs, hostile});
    bySchema.load(schema, 2);
    for (const auto &section : *schema->childEntries())
        EXPECT_EQ(imagesBelow(*section), u"Error"_qs) << section->displayName().toStdString();
    EXPECT_EQ(failures.queries().size(), 1);
    groupBySchema(*details, true);
    CatalogueTree byKind(details);
    byKind.load(byKind.root(), 10);
    EXPECT_EQ(CatalogueTree::namesBelow(byKind.node({u"hostile"_qs, u"Tables"_qs})),
              (QStringList{u"victim"_qs, hostile + u'.' + hostile}));
    EXPECT_EQ(imagesBelow(*byKind.node({u"hostile"_qs, u"Types"_qs, hostile})), u"Error"_qs);
    EXPECT_EQ(
        CatalogueTree::namesBelow(byKind.node({u"hostile"_qs, u"Types"_qs, u"{TYPE_NAME}"_qs})),
        QStringList(u"b"_qs));
}

TEST_F(CatalogueTreeLoads, FollowsTheGroupingFromAnyThread)
{
    const auto details = recordOfNew(u"grouping"_qs, u"CREATE SCHEMA \"Z\"; CREATE SCHEMA a"_qs);
    CatalogueTree tree(details);
    const auto database = tree.node({u"grouping"_qs});
    CatalogueTree unopened(details);
    const auto closed = unopened.node({u"grouping"_qs});
    CatalogueTree other(record(u"postgres"_qs));
    const auto unconcerned = other.node({u"postgres"_qs});
    other.load(unconcerned);
    const auto shown = unconcerned->childEntries();
    const QStringList sections = {u"Tables"_qs,    u"Views"_qs, u"Materialized Views"_qs,
                                  u"Functions"_qs, u"Types"_qs, u"Sequences"_qs};
    EXPECT_FALSE(database->loadEntriesAsync(Reload::IfNeeded)) << "made at once";
    EXPECT_EQ(CatalogueTree::namesBelow(database), sections);
    inBackground([&] { groupBySchema(*details, false); });
    EXPECT_TRUE(DXWait::until([&] { return CatalogueTree::namesBelow(database) != sections; }));
    EXPECT_THAT(CatalogueTree::namesBelow(database),
                UnorderedElementsAre(u"a"_qs, u"public"_qs, u"Z"_qs));
    EXPECT_FALSE(database->isLoadingAsync());
    EXPECT_FALSE(closed->isLoadingAsync() || closed->childEntries()) << "nobody has opened it";
    EXPECT_EQ(unconcerned->childEntries(), shown) << "not its connection's setting";

    const auto schema = tree.node({u"grouping"_qs, u"Z"_qs});
    tree.load(schema);
    const auto first = schema->childEntries();
    EXPECT_EQ(CatalogueTree::namesBelow(schema), sections);
    EXPECT_FALSE(schema->loadEntriesAsync(Reload::IfNeeded));
    EXPECT_EQ(schema->childEntries(), first);
    EXPECT_FALSE(schema->loadEntriesAsync(Reload::Force));
    EXPECT_NE(schema->childEntries(), first);

    // The schemas that are still on their way come too late.
    EXPECT_TRUE(database->loadEntriesAsync(Reload::Force));
    groupBySchema(*details, true);
    EXPECT_TRUE(DXWait::until([&] { return !database->isLoadingAsync(); }));
    EXPECT_EQ(CatalogueTree::namesBelow(database), sections);

    PostgresDatabaseTreeEntrySectionSchemas unused;
    EXPECT_FALSE(unused.loadEntriesAsync(Reload::IfNeeded));
    EXPECT_TRUE(unused.loadEntriesAsync(Reload::IfNeeded));
    EXPECT_FALSE(unused.childEntries());
}

// A load whose answer is from before a change does not have the last word.
TEST_F(CatalogueTreeLoads, LoadsAgainWhatChangedMeanwhile)
{
    const auto details =
        recordOfNew(u"meanwhile"_qs, u"CREATE ROLE repeating LOGIN; ALTER ROLE repeating SET "
                                     "default_transaction_isolation = 'repeatable read';"
                                     "CREATE TABLE dropped ()"_qs);
    // Its statements see what was there before they began to wait.
    details->setUsername(u"repeating"_qs);
    details->setConnectionId(u"meanwhile"_qs);
    CatalogueTree tree(details);
    const auto tables = tree.node({u"meanwhile"_qs, u"Tables"_qs});
    tree.load(tables);
    const auto locker = ServerAccess::connected(record(u"meanwhile"_qs));
    EXPECT_FALSE(ServerAccess::errorOf(
        *locker, u"BEGIN; LOCK TABLE pg_catalog.pg_depend IN ACCESS EXCLUSIVE MODE"_qs));
    EXPECT_TRUE(tables->loadEntriesAsync(Reload::Force));
    EXPECT_TRUE(DXWait::until([] {
        return cluster()
                   .psql(u"SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock' "
                         "AND usename = 'repeating'"_qs)
                   .trimmed()
               == u"1"_qs;
    }));
    EXPECT_FALSE(ServerAccess::errorOf(*locker, u"DROP TABLE dropped; CREATE TABLE added ()"_qs));
    tables->removeChild(*tables->childEntries()->at(0));
    DXDatabaseNotificationTable{
        .dbDetails = details, .tableName = u"added"_qs, .tableSchema = u"public"_qs}
        .post(DXDatabaseNotificationTable::TableAddedNotificationName());
    EXPECT_FALSE(ServerAccess::errorOf(*locker, u"COMMIT"_qs));
    EXPECT_TRUE(DXWait::until([&tables] { return !tables->isLoadingAsync(); }));
    EXPECT_EQ(CatalogueTree::namesBelow(tables), QStringList(u"added"_qs));
}

TEST_F(CatalogueTreeLoads, AsksOldServersInTheirWords)
{
    const auto details = recordOfNew(
        u"old"_qs,
        u"CREATE SCHEMA evil; GRANT USAGE ON SCHEMA evil TO PUBLIC; CREATE FUNCTION evil.version()"
        " RETURNS text LANGUAGE sql AS $$SELECT 'PostgreSQL 8.3.23'$$;"
        "CREATE ROLE elder LOGIN; ALTER ROLE elder SET search_path TO evil, pg_catalog;"
        "CREATE FUNCTION f(named int) RETURNS int LANGUAGE sql AS 'SELECT 1'"_qs);
    const auto f = [](CatalogueTree &tree) {
        return tree.node({u"old"_qs, u"Functions"_qs, u"public.f"_qs})->details();
    };
    details->setUsername(u"elder"_qs);
    CatalogueTree old(details);
    EXPECT_EQ(f(old), u"integer"_qs);
    // Unfolding has loaded the root, which begins to make its search.
    std::shared_ptr<DXDatabaseTreeEntry> hits;
    ASSERT_TRUE(DXWait::until([&] {
        hits = old.root()->copyWithSearchResults(u"f"_qs);
        return hits != nullptr;
    }));
    EXPECT_EQ(CatalogueTree::text(hits).section(u'\n', 1),
              u"  old  [Database]\n    public.f  integer  [StoredProcedure]\n"_qs);
}

TEST_F(CatalogueTreeLoads, FollowsTablesThatTheProgramMakes)
{
    const auto details =
        recordOfNew(u"added"_qs, u"CREATE TABLE b (); CREATE SCHEMA crm;"
                                 "CREATE TABLE crm.a (); CREATE TABLE \"B\" ()"_qs);
    // Records are the same connection only when they have these.
    details->setConnectionId(u"added"_qs);
    details->setPassword(u"not asked for"_qs);
    CatalogueTree tree(details);
    const auto tables = tree.node({u"added"_qs, u"Tables"_qs});
    const auto post = [](const ServerAccess::Record &about, const QString &name) {
        DXDatabaseNotificationTable{.dbDetails = about, .tableName = name, .tableSchema = u"crm"_qs}
            .post(DXDatabaseNotificationTable::TableAddedNotificationName());
    };
    post(details, u"early"_qs);
    EXPECT_FALSE(tables->childEntries()) << "a load will bring it";
    tree.load(tables);
    post(details, u"B"_qs);
    post(details, u"a"_qs);
    const auto other = record(u"added"_qs);
    post(other, u"other"_qs);
    EXPECT_EQ(CatalogueTree::namesBelow(tables),
              (QStringList{u"B"_qs, u"b"_qs, u"crm.B"_qs, u"crm.a"_qs}));
    EXPECT_EQ(tables->childEntries()->at(2)->parent(), tables);
    DXDatabaseNotificationTable{
        .dbDetails = details, .tableName = u"a"_qs, .tableSchema = u"crm"_qs}
        .post(DXDatabaseNotificationTable::TableRemovedNotificationName());
    EXPECT_EQ(tables->childEntries()->size(), 4);
    tables->removeChild(*tables->childEntries()->at(2));
    EXPECT_EQ(CatalogueTree::namesBelow(tables), (QStringList{u"B"_qs, u"b"_qs, u"crm.a"_qs}));
}

} // namespace
