// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresBulkInsertBuilder.h"

#include "driver/PostgresDatabaseClient.h"

#include "support/PrintQt.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{

// What a statement of one row with one column writes for the cell.
QString written(const DXValue &cell, const QString &type)
{
    PostgresBulkInsertBuilder builder(u"t"_qs, {u"c"_qs}, {type});
    DXError error;
    EXPECT_TRUE(builder.addRow({cell}, &error)) << qPrintable(error.description());
    const QString statement = QString::fromUtf8(builder.takeStatement());
    const QString head = u"INSERT INTO t (c) VALUES\r\n("_qs;
    const QString tail = u");"_qs;
    EXPECT_TRUE(statement.startsWith(head) && statement.endsWith(tail)) << qPrintable(statement);
    return statement.sliced(head.size()).chopped(tail.size());
}

TEST(PostgresBulkInsertBuilder, WritesTheStatement)
{
    PostgresBulkInsertBuilder builder(u"sales.\"Orders\""_qs, {u"id"_qs, u"Name"_qs, u"user"_qs},
                                      {u"integer"_qs, u"text"_qs, u"text"_qs});
    ASSERT_TRUE(builder.addRow({qint64(1), u"it's"_qs, DXValue()}, nullptr));
    ASSERT_TRUE(builder.addRow({u"1,000"_qs, u"'größe' 😀"_qs, u"null"_qs}, nullptr));
    EXPECT_EQ(builder.pendingRows(), 2);
    EXPECT_EQ(builder.takeStatement(),
              "INSERT INTO sales.\"Orders\" (id,\"Name\",\"user\") VALUES\r\n"
              "(1,'it''s',NULL),\r\n(1000,'''größe'' 😀',NULL);");
    EXPECT_EQ(builder.pendingRows(), 0);
    // The next batch begins anew behind the same head.
    ASSERT_TRUE(builder.addRow({u""_qs, u""_qs, u"x"_qs}, nullptr));
    EXPECT_EQ(builder.takeStatement(),
              "INSERT INTO sales.\"Orders\" (id,\"Name\",\"user\") VALUES\r\n(,'','x');");
}

TEST(PostgresBulkInsertBuilder, IsFullAt501Rows)
{
    PostgresBulkInsertBuilder builder(u"t"_qs, {u"c"_qs}, {u"text"_qs});
    for (int row = 1; row <= 501; ++row) {
        EXPECT_FALSE(builder.isFull());
        ASSERT_TRUE(builder.addRow({qint64(row)}, nullptr));
    }
    EXPECT_TRUE(builder.isFull());
    EXPECT_EQ(builder.takeStatement().count(",\r\n"), 500);
    EXPECT_FALSE(builder.isFull());
}

TEST(PostgresBulkInsertBuilder, CleansTextsInNumericColumns)
{
    for (const QString &type :
         {u"integer"_qs, u"integer[]"_qs, u"smallint"_qs, u"bigint"_qs, u"decimal"_qs,
          u"numeric(10,2)"_qs, u"real"_qs, u"double precision"_qs, u"serial4"_qs}) {
        EXPECT_EQ(written(u"1,234.50"_qs, type), u"1234.50"_qs) << qPrintable(type);
        EXPECT_EQ(written(u"$12"_qs, type), u"12"_qs) << qPrintable(type);
        EXPECT_EQ(written(u",$,"_qs, type), u""_qs) << qPrintable(type);
    }
    for (const QString &type :
         {u"INTEGER"_qs, u" integer"_qs, u"double"_qs, u"int4"_qs, u"money"_qs, u"text"_qs, u""_qs})
        EXPECT_EQ(written(u"1,234.50"_qs, type), u"'1,234.50'"_qs) << qPrintable(type);
}

TEST(PostgresBulkInsertBuilder, WritesOtherValuesAsTheClientDoes)
{
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    const DXValue values[] = {
        DXValue(),
        qint64(0),
        std::numeric_limits<qint64>::min(),
        std::numeric_limits<qint64>::max(),
        *DXDecimal::fromString("-12345678901234567890.10"),
        *DXDecimal::fromString("NaN"),
        QByteArray(),
        everyByte,
    };
    for (const DXValue &value : values) {
        const QString expected = PostgresDatabaseClient::escapeValue(value);
        EXPECT_EQ(written(value, u"text"_qs), expected);
        EXPECT_EQ(written(value, u"integer"_qs), expected);
    }
    for (const QString &text : {u""_qs, u"'"_qs, u"''a'"_qs, u"NuLL"_qs, u"NULLS"_qs, u"ä'ö'"_qs,
                                u"a\\nb"_qs, QString(100'000, u'\'')})
        EXPECT_EQ(written(text, u"text"_qs), PostgresDatabaseClient::escapeValue(text));
    // Half of a character has no UTF-8 form.
    EXPECT_EQ(written(QString(QChar(0xd83d)) + u'x', u"text"_qs), u"'\ufffdx'"_qs);
}

TEST(PostgresBulkInsertBuilder, RefusesRowsThatCannotBeStored)
{
    const QString withNul = u"a"_qs + QChar(QChar::Null) + u"b"_qs;
    const std::pair<QList<DXValue>, QString> cases[] = {
        {{qint64(1)}, u"it has 1 values for 2 columns. Give it one value a column."_qs},
        {{qint64(1), qint64(2), qint64(3)},
         u"it has 3 values for 2 columns. Give it one value a column."_qs},
        {{qint64(1), withNul},
         u"the text for column \"Name\" holds a NUL character (U+0000), which PostgreSQL cannot "
         "store. Remove it."_qs},
        {{withNul, qint64(1)},
         u"the text for column \"id\" holds a NUL character (U+0000), which PostgreSQL cannot "
         "store. Remove it."_qs},
    };
    for (const auto &[row, reason] : cases) {
        PostgresBulkInsertBuilder builder(u"t"_qs, {u"id"_qs, u"Name"_qs},
                                          {u"integer"_qs, u"text"_qs});
        ASSERT_TRUE(builder.addRow({qint64(1), u"x"_qs}, nullptr));
        DXError error;
        EXPECT_FALSE(builder.addRow(row, &error));
        EXPECT_EQ(error, DXError(u""_qs, 0, u"Row 2 cannot be inserted: "_qs + reason));
    }
}

} // namespace
