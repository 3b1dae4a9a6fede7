// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresDatabaseResultSet.h"

#include <gtest/gtest.h>

namespace
{

struct Case
{
    const char *name;
    const char *message;
    const char *query;
    qsizetype offset;
    // Empty: the error stays as it is.
    QList<DXTextRange> expected;
};

TEST(ErrorDetails, findTheFailingTextInLibpqsMessage)
{
    const QList<DXTextRange> none;
    const std::initializer_list<Case> cases{
        {"second line, shifted",
         "ERROR:  syntax error at or near \"fro\"\nLINE 2: select * fro t\n                 ^\n",
         "select 1;\nselect * fro t",
         100,
         {{119, 3}}},
        {"up to a semicolon", "ERROR:  x\nLINE 1: selec 1;\n        ^", "selec;1", 0, {{0, 5}}},
        {"up to the end",
         "ERROR:  x\r\nLINE 1: select x\r\n               ^\r\n",
         "select x",
         0,
         {{7, 1}}},
        {"no LINE", "ERROR:  division by zero\n", "select 1/0", 0, none},
        {"no caret", "ERROR:  x\nLINE 1: select x\nHINT:  none", "select x", 0, none},
        {"last line", "ERROR:  x\nLINE 1: select x", "select x", 0, none},
        {"no number", "LINE x: a\n        ^", "a", 0, none},
        {"line 0", "LINE 0: a\n        ^", "a", 0, none},
        {"a number that does not fit", "LINE 99999999999999999999: a\n        ^", "a", 0, none},
        {"behind the text", "LINE 1: select x\n                ^", "select x", 0, none},
        {"fewer lines than named", "LINE 30: ab cd\n            ^", "ab cd\n", 0, {{3, 2}}},
        {"a LINE without colon first", "LINE up\nLINE 1: ab\n        ^", "ab", 0, {{0, 2}}},
    };
    for (const Case &oneCase : cases) {
        const DXError error(QStringLiteral("d"), 7, QString::fromLatin1(oneCase.message),
                            {{QStringLiteral("k"), 1}});
        const DXError processed = PostgresDatabaseClient::processErrorDetails(
            error, QString::fromLatin1(oneCase.query), oneCase.offset);
        EXPECT_EQ(processed.queryErrorRanges(), oneCase.expected) << oneCase.name;
        EXPECT_EQ(processed.details().value(QStringLiteral("k")), 1) << oneCase.name;
        EXPECT_EQ(processed.code(), 7) << oneCase.name;
        EXPECT_EQ(processed == error, oneCase.expected.isEmpty()) << oneCase.name;
    }
}

TEST(ErrorDetails, countTheServersCharactersAsUtf16)
{
    const QString query = QStringLiteral("select '\U0001F418\U0001F418', nope from t");
    const DXError error(QString(), 0, QStringLiteral("ERROR:  x"),
                        {{PostgresDatabaseResultSet::statementPositionKey(), 14}});
    const auto ranges =
        PostgresDatabaseClient::processErrorDetails(error, query, 0).queryErrorRanges();
    ASSERT_EQ(ranges.size(), 1);
    EXPECT_EQ(query.mid(ranges[0].location, ranges[0].length), QStringLiteral("nope"));
}

} // namespace
