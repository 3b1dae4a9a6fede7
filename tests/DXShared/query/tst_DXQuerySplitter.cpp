// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQuerySplitter.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

const DXQuerySplitter &splitter()
{
    static const DXQuerySplitter result{SQLMetadataTokenizerOptions()};
    return result;
}

// The pieces with bars between them; checks where they say they stand.
std::string pieces(const QString &text)
{
    std::string result;
    qsizetype end = 0;
    for (const DXQueryDetails &piece : splitter().split(text)) {
        const auto &[location, length] = piece.queryRange;
        EXPECT_EQ(location, end);
        EXPECT_EQ(piece.targetQuery, text.sliced(location, length));
        EXPECT_EQ(piece.lineNumberOffset, text.first(location).count(u'\n'));
        end = piece.queryRange.end();
        result += (result.empty() ? "" : "|") + piece.targetQuery.toStdString();
    }
    EXPECT_EQ(end, text.size());
    return result;
}

// Every case is a text with bars where it is to be cut.
TEST(DXQuerySplitter, cutsWhereTheServerDoes)
{
    for (const char *expected : {
             "",
             " \n-- only\n;;/**/ ",
             "select 1",
             "select 1;|select 2",
             "SELECT 'é€😀;';|SELECT 2;",
             // What stands between two statements.
             ";; -- one\nselect 1; |select 2;;; |/*3*/ select 3",
             "select 1; -- one\n\n  |-- two\n\n;select 2 -- still two\n; -- two\n-- the end;\n;",
             "select 1 -- ;\n; /* ; */ -- x\n",
             // Semicolons that do not end a statement.
             "select ';' \";\" $$;$$ E'\\';' /*;/*;*/;*/ --;\n;|select 2",
             "create rule r as on delete to t do also (select 1; select 2);|select 3;",
             "select (1));|select 2",
             ("CREATE OR /**/ REPLACE FUNCTION f(a int) RETURNS int BEGIN ATOMIC SELECT 1; SELECT "
              "CASE WHEN true THEN CASE WHEN false THEN 1 END END; SELECT t.end, 1 AS end FROM t; "
              "RETURN 2; END; |SELECT 2"),
             "create procedure begin() language sql begin -- x\n atomic; select 1; end;|end;",
             "create function begin() returns int language sql as 'select 1';|select 2;",
             "create function f(begin int) returns \"begin\" atomic;|select 2; |end",
             "begin;|update t set a = case when b then 1 end;|end;",
             "create table begin (atomic int);|select 2;",
             // Text that does not parse.
             "selec 2;|) ; |select 3;",
             "select 1;|select 'abc; select 2;\n",
             "select 1;|select (2; select 3;",
             "create function f() begin atomic select 1; select 2;",
         }) {
        const QString text = QString::fromUtf8(expected).remove(u'|');
        EXPECT_EQ(pieces(text), expected);
    }
}

TEST(DXQuerySplitter, findsTheStatementAtACaret)
{
    const QString text = QStringLiteral("a; \nb;c");
    const auto at = [&text](qsizetype position) {
        const auto piece = splitter().statementAt(text, position);
        return piece ? piece->targetQuery.toStdString() : "(none)";
    };
    EXPECT_EQ(at(0), "a; \n");
    EXPECT_EQ(at(3), "a; \n");
    EXPECT_EQ(at(4), "b;");
    EXPECT_EQ(at(6), "c");
    EXPECT_EQ(at(7), "c");
    EXPECT_FALSE(splitter().statementAt(QString(), 0));
}

} // namespace
