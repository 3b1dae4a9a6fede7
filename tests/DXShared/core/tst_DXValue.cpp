// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXValue.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

TEST(DXValue, readsTheLeadingInteger)
{
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    struct Case
    {
        const char *text;
        qint64 expected;
    };
    for (const auto &[text, expected] : std::initializer_list<Case>{
             {"42", 42},
             {" \t-7rows", -7},
             {"+3", 3},
             {"", 0},
             {"x1", 0},
             {"- 1", 0},
             {"9223372036854775807", most},
             {"9223372036854775808", most},
             {"-9223372036854775808", least},
             {"-9223372036854775809", least},
             {"99999999999999999999999", most},
         })
        EXPECT_EQ(DXValue::leadingInteger(text), expected) << text;
}

TEST(DXValue, tellsNullFromEmptyAndKindFromKind)
{
    EXPECT_TRUE(DXValue(QString()).isNull());
    EXPECT_TRUE(DXValue(QStringLiteral("")).isText());
    EXPECT_TRUE(DXValue().toText().isNull());
    EXPECT_FALSE(DXValue(QByteArray()).toText().isNull());
    EXPECT_NE(DXValue(42), DXValue(QStringLiteral("42")));
    EXPECT_EQ(DXValue(QByteArrayLiteral("12.50")).toDecimal().toString(), QStringLiteral("12.50"));
    EXPECT_EQ(DXValue(*DXDecimal::fromString("12.50")).toInteger(), 12);
}

} // namespace
