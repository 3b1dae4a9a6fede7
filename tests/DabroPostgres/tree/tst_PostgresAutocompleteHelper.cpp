// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresAutocompleteHelper.h"

#include "DabroPostgres/driver/ServerAccess.h"
#include "core/DXNotificationCenter.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

using Update = DXAutocompleteHelper::Update;

class PostgresAutocompleteHelperTest : public Test
{
protected:
    void SetUp() override
    {
        PostgresCluster &cluster = PostgresCluster::shared();
        m_database = u"completed%1"_s.arg(m_count++);
        cluster.createDatabase(m_database);
        psql(u"CREATE SCHEMA crm; CREATE SCHEMA \"Archive\";"
             "CREATE TABLE public.orders (id int, \"Name\" varchar(20));"
             "CREATE TABLE crm.\"Orders\" (id bigint); CREATE VIEW crm.recent AS SELECT 1 AS id;"
             "CREATE TABLE \"Archive\".\"ÄRGER\" (b text)"_s);
        m_record = ServerAccess::record(cluster, m_database);
        m_updates = DXNotificationCenter::sharedInstance().observe(
            DXAutocompleteHelper::AutoCompleteUpdatedNotificationName(),
            [this](const DXNotificationCenter::Notification &notification) {
                EXPECT_EQ(notification.userInfo.value(DXAutocompleteHelper::connectionKey()),
                          m_record->description());
                ++m_announced;
            });
    }
    void psql(const QString &sql) const { PostgresCluster::shared().psql(sql, m_database); }
    /// Requests and waits for the announcement.
    void request(Update update = Update::IfNeeded)
    {
        const int before = m_announced;
        m_helper->requestEntriesForDatabaseConnectionDetails(*m_record, update);
        EXPECT_TRUE(DXWait::until([&] { return m_announced > before; }));
    }
    static QString names(const DXAutocompleteHelper::Entries &entries)
    {
        if (!entries)
            return u"none"_s;
        QStringList names;
        for (const auto &entry : *entries)
            names += entry->entryName;
        return names.join(u' ');
    }
    QString columns(const QString &inTable) const
    {
        return names(m_helper->columnsForDatabaseConnectionDetails(*m_record, inTable));
    }
    QString under(const QString &parent) const
    {
        return names(m_helper->entriesForDatabaseConnectionDetails(*m_record, parent));
    }

    const std::shared_ptr<PostgresAutocompleteHelper> m_helper =
        std::make_shared<PostgresAutocompleteHelper>();
    QString m_database;
    ServerAccess::Record m_record;
    int m_announced = 0;

private:
    static inline int m_count = 0;
    std::shared_ptr<void> m_updates;
};

TEST_F(PostgresAutocompleteHelperTest, FindsNamesByWhatIsWritten)
{
    EXPECT_EQ(columns(u"orders"_s), u"none"_s);
    request();
    EXPECT_EQ(names(m_helper->schemasForDatabaseConnectionDetails(*m_record)),
              u"Archive crm public"_s);
    EXPECT_EQ(names(m_helper->tablesForDatabaseConnectionDetails(*m_record)),
              u"ÄRGER Orders recent orders"_s);
    EXPECT_EQ(names(m_helper->columnsForDatabaseConnectionDetails(*m_record)),
              u"b id id id Name"_s);
    EXPECT_EQ(columns(u"orders"_s), u"id Name"_s);
    EXPECT_EQ(columns(u"\"ORDERS\""_s), u"id Name"_s);
    EXPECT_EQ(columns(u"Public.Orders"_s), u"id Name"_s);
    EXPECT_EQ(columns(u"CRM.orders"_s), u"id"_s);
    EXPECT_EQ(columns(u"recent"_s), u"none"_s);
    EXPECT_EQ(columns(u"archive.ärger"_s), u"b"_s);
    EXPECT_EQ(columns(u"crm"_s), u"none"_s);
    EXPECT_EQ(under(u"crm"_s), u"Orders recent"_s);
    EXPECT_EQ(under(u"public.orders"_s), u"id Name"_s);
    EXPECT_THAT(m_helper->possibleNamesForAlias(*m_record),
                ElementsAre(u"archive"_s, u"archive.ärger"_s, u"crm"_s, u"crm.orders"_s,
                            u"crm.recent"_s, u"orders"_s, u"public"_s, u"public.orders"_s));
}

TEST_F(PostgresAutocompleteHelperTest, TellsWhereANameIsFrom)
{
    request();
    const auto tables = *m_helper->tablesForDatabaseConnectionDetails(*m_record);
    const auto &orders = *tables.constLast();
    const auto &name = *orders.entryChildren.constLast();
    EXPECT_EQ(orders.entryParentDisplay, u"public"_s);
    EXPECT_EQ(orders.entryParent.lock()->entryName, u"public"_s);
    EXPECT_EQ(name.entryParentDisplay, u"public.orders"_s);
    EXPECT_EQ(name.entryParent.lock().get(), &orders);
    EXPECT_EQ(name.entryDetails, u"character varying(20)"_s);
    EXPECT_EQ(name.entryCompletionType, DXDatabaseAutocompleteEntry::CompletionType::Column);
}

TEST_F(PostgresAutocompleteHelperTest, LoadsAgainOnlyWhenForced)
{
    const ServerAccess::LoggedTexts log;
    m_helper->requestEntriesForDatabaseConnectionDetails(*m_record);
    request();
    psql(u"CREATE TABLE public.later (x int)"_s);
    request();
    EXPECT_EQ(log.texts().count(u"Finished autocomplete query block."_s), 1);
    EXPECT_EQ(columns(u"later"_s), u"none"_s);
    request(Update::Force);
    EXPECT_EQ(columns(u"later"_s), u"x"_s);
}

TEST_F(PostgresAutocompleteHelperTest, KeepsWhatItHasWhenALoadFails)
{
    request();
    // Another password makes another session.
    m_record->setPassword(u"other"_s);
    PostgresCluster::shared().psql(u"ALTER DATABASE %1 ALLOW_CONNECTIONS false"_s.arg(m_database));
    request(Update::Force);
    EXPECT_EQ(columns(u"orders"_s), u"id Name"_s);
}

TEST_F(PostgresAutocompleteHelperTest, AsksNothingWithoutADatabase)
{
    m_record->setDatabase(QString());
    m_helper->requestEntriesForDatabaseConnectionDetails(*m_record, Update::Force);
    EXPECT_EQ(m_helper->schemasForDatabaseConnectionDetails(*m_record), std::nullopt);
}

TEST(PostgresAutocompleteEntires, AnEmptyDatabaseHasEmptyLists)
{
    PostgresAutocompleteEntires entries;
    entries.createCache(u"public"_s);
    EXPECT_TRUE(entries.schemas().isEmpty() && entries.tableNames().isEmpty());
    EXPECT_TRUE(entries.allPossibleNamesForAlias().isEmpty());
}

TEST(PostgresAutocompleteEntires, JoinsNeighboursThatDifferInCase)
{
    PostgresAutocompleteEntires entries;
    for (const auto &[schema, table, column] :
         {std::tuple(u"S"_s, u"T"_s, u"b"_s), std::tuple(u"s"_s, u"t"_s, u"a"_s),
          std::tuple(u"s"_s, u"u"_s, u"B"_s), std::tuple(u"r"_s, u"u"_s, u"b"_s)})
        entries.addRow({.schemaName = schema,
                        .tableName = table,
                        .columnName = column,
                        .columnType = u"int"_s});
    entries.createCache(u"s"_s);
    EXPECT_THAT(entries.schemaNames(), ElementsAre(u"r"_s, u"S"_s));
    EXPECT_THAT(entries.tableNames(), ElementsAre(u"T"_s, u"u"_s));
    EXPECT_THAT(entries.columnNames(), ElementsAre(u"a"_s, u"b"_s, u"B"_s));
    EXPECT_EQ(entries.columnsForTableAndOrSchema(u"T"_s)->size(), 2);
    EXPECT_EQ(entries.columnsForTableAndOrSchema(u"r.u"_s)->size(), 1);
}

} // namespace
