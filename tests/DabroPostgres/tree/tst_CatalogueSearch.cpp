// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/tree/CatalogueTree.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"

#include <gmock/gmock.h>

using namespace testing;

namespace
{

TEST(PostgresSearchIndex, FindsPartsOfTextsInAnyCase)
{
    const auto entry = [](const QString &display, const QString &search) {
        return PostgresSearchIndex::Entry{.display = display, .search = search};
    };
    const PostgresSearchIndex index({entry(u"orders"_qs, u"Orders"_qs), entry(u"größe"_qs, {}),
                                     entry(u"x"_qs, u"order_items order"_qs),
                                     entry(u"ab"_qs, u"ab"_qs), entry(u"c"_qs, u"c"_qs),
                                     entry({}, {}), entry(u"aab"_qs, u"aab"_qs)});
    const QList<std::pair<QString, QList<qsizetype>>> cases = {
        {u"ORDER"_qs, {0, 2}}, {u"GRÖ"_qs, {1}}, {u"e"_qs, {0, 1, 2}},   {u"bc"_qs, {}},
        {u"ab"_qs, {3, 6}},    {u"aab"_qs, {6}}, {u"aabc"_qs, {}},       {QString(), {}},
        {u"b\0c"_qs, {}},      {u"x"_qs, {}},    {QString(99, u'a'), {}}};
    for (const auto &[search, expected] : cases)
        EXPECT_EQ(index.matches(search), expected) << search.toStdString();
}

TEST(PostgresSearchIndex, FindsWhatComparingEachTextFinds)
{
    QList<PostgresSearchIndex::Entry> entries;
    for (int number = 0; number < 5000; ++number)
        entries.append({.search = u"Table_%1_%2"_qs.arg(number).arg(number * 7919 % 1000, 0, 36)});
    const PostgresSearchIndex index(entries);
    for (const QString &search : {u"t"_qs, u"_1"_qs, u"99"_qs, u"E_4999"_qs, u"_r"_qs, u"0"_qs}) {
        QList<qsizetype> expected;
        for (qsizetype number = 0; number < entries.size(); ++number) {
            if (entries[number].search.contains(search, Qt::CaseInsensitive))
                expected.append(number);
        }
        EXPECT_EQ(index.matches(search), expected) << search.toStdString();
    }
}

TEST(CatalogueSearch, CopiesWhatMatchesInEachDatabase)
{
    PostgresCluster &cluster = PostgresCluster::shared();
    for (const QString &name : {u"search_one"_qs, u"search_two"_qs})
        cluster.createDatabase(name);
    cluster.psql(
        u"CREATE SCHEMA crm; CREATE TABLE crm.\"Orders\" (id int);"
        "CREATE VIEW order_view AS SELECT 1; CREATE MATERIALIZED VIEW order_sums AS SELECT 1;"
        "CREATE FUNCTION reorder(a int) RETURNS int LANGUAGE sql AS 'SELECT 1'"_qs,
        u"search_one"_qs);
    cluster.psql(u"CREATE TABLE two_orders (); CREATE TABLE only_two ()"_qs, u"search_two"_qs);
    CatalogueTree tree(ServerAccess::record(cluster, {}));
    EXPECT_FALSE(tree.root()->copyWithSearchResults(u"order"_qs)) << "nothing is known yet";
    tree.awaitSearch();

    EXPECT_FALSE(tree.root()->copyWithSearchResults(u"no such thing"_qs));
    const auto copy = tree.root()->copyWithSearchResults(u"ORDER"_qs);
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->displayName(), tree.root()->displayName());
    EXPECT_EQ(copy->details(), tree.root()->details());
    EXPECT_FALSE(copy->loadEntriesAsync(DXDatabaseTreeEntry::Reload::Force));
    EXPECT_THAT(CatalogueTree::namesBelow(copy),
                UnorderedElementsAre(u"search_one"_qs, u"search_two"_qs));

    const auto only = tree.root()->copyWithSearchResults(u"nly_tw"_qs);
    ASSERT_TRUE(only);
    EXPECT_EQ(CatalogueTree::text(only).section(u'\n', 1),
              u"  search_two  [Database]\n    public.only_two  [Table]\n"_qs);
    const auto one = tree.root()->copyWithSearchResults(u"rder"_qs)->childEntries();
    for (const auto &database : *one) {
        EXPECT_FALSE(database->loadEntriesAsync(DXDatabaseTreeEntry::Reload::Force));
        if (database->displayName() != u"search_one"_qs)
            continue;
        EXPECT_EQ(CatalogueTree::text(database),
                  u"search_one  [Database]\n  crm.Orders  [Table]\n  public.order_view  [View]\n"
                  "  public.reorder  a integer  [StoredProcedure]\n"_qs);
        const auto table = database->childEntries()->front();
        EXPECT_EQ(table->parent(), database);
        tree.load(table);
        EXPECT_EQ(CatalogueTree::namesBelow(table),
                  (QStringList{u"id"_qs, u"Indexes"_qs, u"Triggers"_qs}));
    }
}

// The refresh of a load that ends while another's is under way is not lost.
TEST(CatalogueSearch, KnowsTheDatabasesOfTheLastLoad)
{
    PostgresCluster &cluster = PostgresCluster::shared();
    cluster.createDatabase(u"search_late"_qs);
    cluster.psql(u"CREATE TABLE wanted ()"_qs, u"search_late"_qs);
    const auto details = ServerAccess::record(cluster, u"search_late"_qs);
    const auto locker = ServerAccess::connected(details);
    EXPECT_FALSE(ServerAccess::errorOf(
        *locker, u"BEGIN; LOCK TABLE pg_catalog.pg_depend IN ACCESS EXCLUSIVE MODE"_qs));
    CatalogueTree tree(details);
    tree.load(tree.root());
    EXPECT_TRUE(DXWait::until([&cluster] {
        return cluster
                   .psql(u"SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock' "
                         "AND query LIKE '%search_text%'"_qs)
                   .trimmed()
               == u"1"_qs;
    }));
    const auto first = tree.root()->childEntries();
    tree.reload(tree.root());
    EXPECT_NE(tree.root()->childEntries(), first);
    EXPECT_FALSE(ServerAccess::errorOf(*locker, u"COMMIT"_qs));
    EXPECT_TRUE(DXWait::until(
        [&tree] { return tree.root()->copyWithSearchResults(u"wanted"_qs) != nullptr; }));
}

} // namespace
