// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXSQLCompletion.h"

#include "editing/DXCompletionCache.h"
#include "support/DXWait.h"
#include "support/FakeCompletion.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

using namespace testing;

namespace
{

class DXSQLCompletionTest : public Test
{
protected:
    DXSQLCompletionTest()
    {
        auto &names = *m_details->helper;
        names.add(u"public"_qs, u"orders"_qs,
                  {u"id int"_qs, u"customer_id int"_qs, u"placed_at date"_qs});
        names.add(u"public"_qs, u"order_items"_qs,
                  {u"id int"_qs, u"order_id int"_qs, u"price numeric"_qs});
        names.add(u"public"_qs, u"customers"_qs, {u"id int"_qs, u"customer_id int"_qs});
        names.add(u"crm"_qs, u"orders"_qs, {u"id uuid"_qs, u"lead text"_qs});
        names.add(u"crm"_qs, u"visits"_qs, {u"at time"_qs});
        names.add(u"public"_qs, u"Odd one"_qs, {u"Sum_Total int"_qs});
        names.publish(m_details->description());
        m_cache = DXCompletionCache::of(m_details);
        EXPECT_TRUE(DXWait::until([this] { return m_cache->names() != nullptr; }));
    }

    DXSQLCompletion::Answer answer(const QString &marked) const
    {
        const qsizetype caret = marked.indexOf(u'|');
        return DXSQLCompletion(m_details).complete(QString(marked).remove(caret, 1), caret);
    }
    /// What would be written, without key words and functions unless they are all that is wanted.
    QString offered(const QString &marked, bool words = false) const
    {
        QStringList texts;
        for (const auto &candidate : answer(marked).candidates) {
            if ((candidate.kind >= DXSQLCompletion::Kind::Function) == words)
                texts += candidate.text;
        }
        return texts.join(u' ');
    }
    /// The text once the first candidate was taken.
    QString taken(const QString &marked) const
    {
        const auto found = answer(marked);
        return QString(marked).remove(u'|').replace(found.replaced.location, found.replaced.length,
                                                    found.candidates.value(0).text + u'^');
    }

    const std::shared_ptr<FakeCompletionDBC> m_details = std::make_shared<FakeCompletionDBC>();
    std::shared_ptr<DXCompletionCache> m_cache;
};

struct Case
{
    QString text;
    QString offered;
};

TEST_F(DXSQLCompletionTest, knowsWhatTheStatementMeans)
{
    const QString orders = u"id customer_id placed_at"_qs;
    const QString items = u"id order_id price"_qs;
    const Case cases[] = {
        // Aliases, before and behind the caret, in any case, quoted and schema-qualified.
        {u"select o.| from orders o"_qs, orders},
        {u"select 1; select O.| from orders as o; select 2"_qs, orders},
        {u"select * from orders o join order_items \"oi\" on o.id = oi.|"_qs, items},
        {u"select * from crm.orders o where o.|"_qs, u"id lead"_qs},
        {u"select orders.| from CRM.\"orders\""_qs, u"id lead"_qs},
        {u"select crm.orders.|"_qs, u"id lead"_qs},
        {u"select * from orders o, order_items i where i.pr|"_qs, u"price"_qs},
        {u"select o.| from visits v, orders o where"_qs, orders},
        {u"update orders o set placed_at = o.|"_qs, orders},
        {u"delete from orders o using order_items i where i.|"_qs, items},
        {u"insert into orders as o values (1) on conflict (id) do update set id = o.|"_qs, orders},
        {u"select * from orders o where exists (select 1 from order_items i where i.id = o.|)"_qs,
         orders},
        // Not what another statement, another branch or a string says.
        {u"select 1 from orders o; select o.|"_qs, u""_qs},
        {u"select 1 from orders o union select o.| from order_items o"_qs, items},
        {u"select ' from orders o ', o.| from order_items o"_qs, items},
        {u"select a is distinct from b, o.| from order_items o"_qs, items},
        {u"select extract(year from x), o.| from order_items o"_qs, items},
        // Subqueries and common table expressions, told and derived.
        {u"select s.| from (select id, price * 2 as twice, count(*), x::int, i.order_id n, now() "
         "from order_items i) s"_qs,
         u"id twice count x n now"_qs},
        {u"select s.| from (select i.*, 1 one from order_items i) as s"_qs,
         u"id order_id price one"_qs},
        {u"select s.| from (select * from orders) s(a, b)"_qs, u"a b placed_at"_qs},
        {u"select v.| from (values (1, f(2, 3)), (4, 5)) v"_qs, u"column1 column2"_qs},
        {u"with c(a, b) as (select 1, 2), d as (select * from c) select d.| from d"_qs, u"a b"_qs},
        {u"with recursive t as (select id from orders union all select 1 from t) select t.| from "
         "t"_qs,
         u"id"_qs},
        {u"with gone as (delete from orders o returning o.id, placed_at as at) select g.| from "
         u"gone "
         "g"_qs,
         u"id at"_qs},
        {u"with c as (select c.| from customers c) select 1 from orders c"_qs,
         u"id customer_id"_qs},
        {u"select f.| from f(1) as f(a int, b text)"_qs, u"a b"_qs},
        {u"select case when true then 1 end, s.| from (select case when 1=1 then 2 end from "
         "orders) s"_qs,
         u"case"_qs},
        // Tables.
        {u"select * from or|"_qs, u"order_items orders crm.orders"_qs},
        {u"select * from orders join cust|"_qs, u"customers"_qs},
        {u"select * from crm.|"_qs, u"orders visits"_qs},
        {u"select * from crm.vi| where"_qs, u"visits"_qs},
        {u"with cte as (select 1) select * from ct|"_qs, u"cte"_qs},
        {u"insert into vis|"_qs, u"crm.visits"_qs},
        {u"update cus| set"_qs, u"customers"_qs},
        {u"explain analyze select * from vi|"_qs, u"crm.visits"_qs},
        {u"alter table cus|"_qs, u"customers"_qs},
        {u"create index i on cus|"_qs, u"customers"_qs},
        // Lists of columns leave out what they hold.
        {u"insert into orders (id, |)"_qs, u"customer_id placed_at"_qs},
        {u"insert into crm.orders (|id) values (1)"_qs, u"lead"_qs},
        {u"update orders set id = 1, | where"_qs, u"customer_id placed_at"_qs},
        {u"select * from orders o join customers c using (|)"_qs, u"id customer_id"_qs},
        {u"create index i on orders (pl|)"_qs, u"placed_at"_qs},
        // Names of the query come first; what several of its tables have says which.
        {u"select | from orders o, customers c"_qs,
         u"o.id o.customer_id placed_at c.id c.customer_id o c"_qs},
        {u"select pla| from orders"_qs, u"placed_at"_qs},
        {u"insert into orders (id) select pr| from order_items"_qs, u"price"_qs},
        {u"select price as total from order_items order by tot|"_qs, u"total"_qs},
        {u"select placed|"_qs, u"placed_at"_qs},
        // A new name is nobody's.
        {u"select id as pl| from orders"_qs, u""_qs},
        {u"select * from orders o |"_qs, u""_qs},
        // Strings, comments, numbers.
        {u"select 'or|' from orders"_qs, u""_qs},
        {u"select 1 -- or|"_qs, u""_qs},
        {u"select 1 -- or|\n from orders"_qs, u""_qs},
        {u"select /* or| */ 1 from orders"_qs, u""_qs},
        {u"select $$ or| $$ from orders"_qs, u""_qs},
        {u"select 12| from orders"_qs, u""_qs},
    };
    for (const Case &each : cases)
        EXPECT_EQ(offered(each.text), each.offered) << each.text.toStdString();
}

TEST_F(DXSQLCompletionTest, findsWordsInNamesBehindTheirBeginnings)
{
    EXPECT_EQ(offered(u"select * from oi|"_qs), u"order_items"_qs);
    EXPECT_EQ(offered(u"select * from item|"_qs), u"order_items"_qs);
    EXPECT_EQ(offered(u"select * from ONE|"_qs), u"\"Odd one\""_qs);
    EXPECT_EQ(offered(u"select at| from orders, crm.visits"_qs), u"at placed_at"_qs);
}

TEST_F(DXSQLCompletionTest, writesWhatTheDatabaseReads)
{
    EXPECT_EQ(taken(u"select * from \"odd| where"_qs), u"select * from \"Odd one\"^ where"_qs);
    EXPECT_EQ(taken(u"select * from \"cu|x\" where"_qs), u"select * from \"customers\"^ where"_qs);
    EXPECT_EQ(taken(u"select * from cu|stom"_qs), u"select * from customers^"_qs);
    EXPECT_EQ(taken(u"select o.| from orders o"_qs), u"select o.id^ from orders o"_qs);
}

TEST_F(DXSQLCompletionTest, followsTheCaseOfKeyWords)
{
    EXPECT_EQ(offered(u"se|"_qs, true), u"select sequence set"_qs);
    EXPECT_EQ(offered(u"SEL|"_qs, true), u"SELECT"_qs);
    EXPECT_TRUE(offered(u"select * from orders |"_qs, true).contains(u"where"));
    EXPECT_EQ(offered(u"SELECT cou| FROM orders"_qs, true), u"count"_qs);
}

TEST_F(DXSQLCompletionTest, takesNewNamesOnceTheyAreThere)
{
    EXPECT_EQ(offered(u"select * from fresh|"_qs), u""_qs);
    const auto before = m_cache->names();
    m_details->helper->add(u"public"_qs, u"fresh"_qs, {});
    m_details->helper->publish(u"another connection"_qs);
    m_details->helper->publish(m_details->description());
    ASSERT_TRUE(DXWait::until([&] { return m_cache->names() != before; }));
    EXPECT_EQ(offered(u"select * from fresh|"_qs), u"fresh"_qs);
}

TEST_F(DXSQLCompletionTest, survivesEveryBeginningOfAStatement)
{
    const QString text =
        u"with recursive a(x) as (select * from (orders o join crm.visits v using (id)) where (1, "
        "case when o.x then 'y' end) in (values (1, 2))), b as (insert into orders (id, x) select "
        "* from a on conflict (id) do update set x = excluded.x returning *) select a.*, (select "
        "\"Q\" from lateral (table b) q(z)) from a, rows from (f(1)) as g(y int) group by "
        "rollup ((1), 2) union (select 3 except ((values (4)))) order by 1"_qs;
    for (qsizetype length = 0; length <= text.size(); ++length) {
        answer(text.first(length) + u'|');
        answer(text.first(length) + u'|' + text.sliced(length));
        answer(u'|' + text.sliced(length));
    }
    answer(u"select * from "_qs + u"(select * from "_qs.repeated(2000) + u'|');
    answer(u"with a as "_qs.repeated(2000) + u"("_qs.repeated(2000) + u'|');
}

} // namespace
