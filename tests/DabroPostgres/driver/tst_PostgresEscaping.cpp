// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "support/PrintQt.h"

#include <gmock/gmock.h>

namespace
{

using Client = PostgresDatabaseClient;

struct Case
{
    QString text;
    QString expected;
};

TEST(PostgresEscaping, QuotesNamesThatNeedIt)
{
    const Case cases[] = {
        {u""_qs, u""_qs},
        {u"orders"_qs, u"orders"_qs},
        {u"Orders"_qs, u"\"Orders\""_qs},
        {u"my table"_qs, u"\"my table\""_qs},
        {u"my\ttable"_qs, u"\"my\ttable\""_qs},
        {u"my\u00a0table"_qs, u"\"my\u00a0table\""_qs},
        {u"my\u2003table"_qs, u"\"my\u2003table\""_qs},
        {u"Sales-2020"_qs, u"\"Sales-2020\""_qs},
        {u"sales_2020"_qs, u"sales_2020"_qs},
        {u"2020$%(x)"_qs, u"2020$%(x)"_qs},
        {u"größe"_qs, u"größe"_qs},
        {u"Äpfel"_qs, u"Äpfel"_qs},
        {u"say \"hi\""_qs, u"\"say \"hi\"\""_qs},
        {u"\"Orders\""_qs, u"\"Orders\""_qs},
        {u"\"half open.x"_qs, u"\"half open.x"_qs},
        {u"select"_qs, u"\"select\""_qs},
        {u"selection"_qs, u"selection"_qs},
        {u"sales.Orders"_qs, u"sales.\"Orders\""_qs},
        {u"Sales.\"Orders\""_qs, u"\"Sales\".\"Orders\""_qs},
        {u"sales.select"_qs, u"sales.\"select\""_qs},
        {u".Orders"_qs, u".\"Orders\""_qs},
        {u"a.b.c"_qs, u"a.b.c"_qs},
        {u"a.B.c"_qs, u"\"a.B.c\""_qs},
    };
    for (const auto &[name, expected] : cases)
        EXPECT_EQ(Client::escapeTableNameIfRequired(name), expected);
}

TEST(PostgresEscaping, UnquotesOnePair)
{
    const Case cases[] = {
        {u"\"Orders\""_qs, u"Orders"_qs},
        {u"orders"_qs, u"orders"_qs},
        {u"\"a\"\"b\""_qs, u"a\"\"b"_qs},
        {u"\"\"x\"\""_qs, u"\"x\""_qs},
        {u"\"open"_qs, u"\"open"_qs},
        {u"\""_qs, u"\""_qs},
        {u"\"\""_qs, u""_qs},
    };
    for (const auto &[name, expected] : cases)
        EXPECT_EQ(Client::unescapeTableNameIfRequired(name), expected);
}

TEST(PostgresEscaping, QuotesEachPartOfATablePath)
{
    const Case cases[] = {
        {u"orders"_qs, u"orders"_qs},
        {u"sales.Orders"_qs, u"sales.\"Orders\""_qs},
        {u"shop.Sales.order"_qs, u"shop.\"Sales\".\"order\""_qs},
        {u"\"a.B\".c"_qs, u"\"a.B\".c"_qs},
        {u"sales.\"Q1.2020\".X"_qs, u"sales.\"Q1.2020\".\"X\""_qs},
        {u"\"a\"\".b\".C"_qs, u"\"a\"\".b\".\"C\""_qs},
        {u"4\".Big"_qs, u"4\".\"Big\""_qs},
        {u"a..B."_qs, u"a..\"B\"."_qs},
        {u""_qs, u""_qs},
    };
    const Client client;
    for (const auto &[path, expected] : cases)
        EXPECT_EQ(client.escapeTablePaths(path), expected);
}

TEST(PostgresEscaping, WritesValuesAsLiterals)
{
    const std::pair<DXValue, QString> cases[] = {
        {DXValue(), u"NULL"_qs},
        {DXValue(u"null"_qs), u"NULL"_qs},
        {DXValue(u"nullify"_qs), u"'nullify'"_qs},
        {DXValue(u""_qs), u"''"_qs},
        {DXValue(u"it's"_qs), u"'it''s'"_qs},
        {DXValue(u"''"_qs), u"''''''"_qs},
        {DXValue(u"a\\b %1"_qs), u"'a\\b %1'"_qs},
        {DXValue(QByteArray("\x0a\xff", 2)), u"encode('0AFF','hex')"_qs},
        {DXValue(QByteArray()), u"encode('','hex')"_qs},
        {DXValue(qint64(-12)), u"-12"_qs},
        {DXValue(*DXDecimal::fromString("1234567890123456789.50")), u"1234567890123456789.50"_qs},
        {DXValue(*DXDecimal::fromString("NaN")), u"'NaN'"_qs},
        {DXValue(*DXDecimal::fromString("-inf")), u"'-Infinity'"_qs},
    };
    for (const auto &[value, expected] : cases)
        EXPECT_EQ(Client::escapeValue(value), expected);
}

TEST(PostgresEscaping, LeavesValuesAloneWithoutAConnection)
{
    const Client client;
    EXPECT_EQ(client.databaseProviderEscape(DXValue(u"it's"_qs)), DXValue(u"it's"_qs));
    EXPECT_EQ(client.databaseProviderEscape(DXValue(qint64(5))), DXValue(qint64(5)));
}

TEST(PostgresEscaping, SplitsArrays)
{
    const std::pair<QString, std::optional<QStringList>> cases[] = {
        {uR"({a,"b c","d\"e"})"_qs, QStringList{u"a"_qs, u"b c"_qs, u"d\"e"_qs}},
        {uR"({"a,b"})"_qs, QStringList{u"\"a"_qs, u"b\""_qs}},
        {uR"({",",""})"_qs, QStringList{u"\""_qs, u"\""_qs, u""_qs}},
        {uR"({a\"b})"_qs, QStringList{u"a\\\"b"_qs}},
        {u"{}"_qs, QStringList{u""_qs}},
        {u"{"_qs, std::nullopt},
        {u"a,b"_qs, std::nullopt},
        {u""_qs, std::nullopt},
    };
    for (const auto &[array, expected] : cases)
        EXPECT_EQ(Client::splitPostgresArray(array), expected);
}

TEST(PostgresEscaping, SplitsQualifiedNames)
{
    const std::tuple<QString, QString, QString> cases[] = {
        {u"\"My Schema\".\"My Table\""_qs, u"My Schema"_qs, u"My Table"_qs},
        {u"'a'.b.c"_qs, u"a"_qs, u"b.c"_qs},
        {u".b"_qs, u""_qs, u"b"_qs},
    };
    for (const auto &[name, schema, object] : cases) {
        EXPECT_EQ(Client::splitString(name).schema, schema);
        EXPECT_EQ(Client::splitString(name).object, object);
        EXPECT_FALSE(Client::splitString(name).schema.isNull());
    }
    EXPECT_TRUE(Client::splitString(u"\"orders\""_qs).schema.isNull());
    EXPECT_EQ(Client::splitString(u"\"orders\""_qs).object, u"orders"_qs);
}

TEST(PostgresEscaping, ValidatesNamesByUnicodeCategory)
{
    for (const QString &valid : {u""_qs, u"my_table"_qs, u"Sales-2020"_qs, u"größe"_qs,
                                 u"e\u0301te"_qs, u"\u2167\u00bd\u0663"_qs, u"\u8868\U00020000"_qs})
        EXPECT_TRUE(Client::isTableNameValid(valid)) << qPrintable(valid);
    for (const QString &invalid : {u"my table"_qs, u"a.b"_qs, u"\"a\""_qs, u"a$"_qs,
                                   u"\U0001F600"_qs, QString(QChar(0xd800)) + u'a'})
        EXPECT_FALSE(Client::isTableNameValid(invalid)) << qPrintable(invalid);
}

} // namespace
