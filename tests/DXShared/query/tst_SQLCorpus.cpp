// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/query/PgQueryOracle.h"
#include "DXShared/query/PsqlOracle.h"
#include "DXShared/query/SQLCorpus.h"
#include "DXShared/query/Tokens.h"
#include "query/DXQuerySplitter.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

// A statement's words without the semicolons at either end.
QString statementOf(const QString &text)
{
    QStringList words = wordsOf(text);
    while (!words.isEmpty() && words.last() == u";")
        words.removeLast();
    while (!words.isEmpty() && words.first() == u";")
        words.removeFirst();
    return words.join(u'\x1f');
}

QStringList statementsOf(const QStringList &texts)
{
    QStringList statements;
    for (const QString &text : texts) {
        if (const QString statement = statementOf(text); !statement.isEmpty())
            statements.append(statement);
    }
    return statements;
}

QStringList piecesOf(const QString &text)
{
    QStringList pieces;
    for (const DXQueryDetails &piece : DXQuerySplitter({}).split(text))
        pieces.append(piece.targetQuery);
    return pieces;
}

// Compares lists of thousands, telling the first difference.
void expectSame(const QStringList &actual, const QStringList &expected)
{
    const auto [one, other] =
        std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
    EXPECT_EQ(one == actual.end() ? QString() : *one, other == expected.end() ? QString() : *other)
        << "at " << (one - actual.begin());
}

// Texts made of up to `longest` of the parts, the same in every run.
template<std::size_t Size>
QString randomText(std::mt19937 &random, const char *const (&parts)[Size], unsigned longest)
{
    QString text;
    for (auto count = 1 + random() % longest; count > 0; --count)
        text += QString::fromUtf8(parts[random() % Size]);
    return text;
}

TEST(SQLCorpus, givesTheTokensOfTheServersScanner)
{
    qsizetype compared = 0;
    for (const auto &[name, text] : SQLCorpus::scripts()) {
        const auto expected = PgQueryOracle::scan(text.toUtf8());
        ASSERT_TRUE(expected) << qPrintable(name);
        const auto tokens = PgQueryOracle::translated(text, tokensOf(text)).value();
        const auto [one, other] =
            std::mismatch(tokens.begin(), tokens.end(), expected->begin(), expected->end());
        ASSERT_TRUE(one == tokens.end() && other == expected->end())
            << qPrintable(name) << " differs at byte " << (one == tokens.end() ? -1 : one->start);
        compared += tokens.size();
    }
    EXPECT_GT(compared, 100'000);
}

TEST(SQLCorpus, givesTheTokensOfTheServersScannerForOddTexts)
{
    const char *const parts[] = {
        "'",  "''", "\"",  "E'", "u&'", "U&\"", "n'", "B'", "x'0", "$",  "$$", "$a$",
        "$1", "a",  "é",   "e",  "n",   "1",    ".",  "..", "1e",  "+",  "-",  "--",
        "/",  "*",  "/*",  "*/", "<",   "=",    ">",  "@",  "#",   "|",  "?",  ":",
        "::", ":=", ";",   "(",  ")",   "[",    ",",  "\\", " ",   "\t", "\n", "\r",
        "\n", "'",  "'a'", "\n", "*/ ", "'\n",  "€😀", "%",  "\f",  "_",  "$b", "!",
    };
    std::mt19937 random(1);
    int compared = 0;
    for (int i = 0; i < 50'000; ++i) {
        const QString text = randomText(random, parts, 12);
        ASSERT_EQ(faultOfTokens(text), QString()) << qPrintable(text);
        const auto expected = PgQueryOracle::scan(text.toUtf8());
        const auto tokens = PgQueryOracle::translated(text, tokensOf(text));
        if (expected && tokens) {
            ASSERT_EQ(*tokens, *expected) << qPrintable(text);
            ++compared;
        }
    }
    EXPECT_GT(compared, 10'000);
}

TEST(SQLCorpus, cutsScriptsAsTheParserDoes)
{
    qsizetype statements = 0;
    for (const auto &[name, text] : SQLCorpus::scripts()) {
        if (const auto expected = PgQueryOracle::split(text.toUtf8())) {
            SCOPED_TRACE(qPrintable(name));
            expectSame(statementsOf(piecesOf(text)), statementsOf(*expected));
            ASSERT_EQ(piecesOf(text).size(), qMax(1, expected->size()));
            statements += expected->size();
        }
    }
    EXPECT_GT(statements, 3000);
}

TEST(SQLCorpus, cutsScriptsAsPsqlDoes)
{
    QString all;
    QStringList pieces;
    for (const auto &[name, text] : SQLCorpus::scripts()) {
        all += text + QStringLiteral("\n;\n");
        pieces += piecesOf(text);
    }
    EXPECT_GT(pieces.size(), 3000);
    expectSame(statementsOf(pieces), statementsOf(sentByPsql(all)));
}

TEST(SQLCorpus, cutsOddTextsAsPsqlDoes)
{
    const char *const parts[] = {
        ";",     ";",      ";\n", " ", " case ", " END ", "(",      ")",        "/* ; */",
        "--;\n", " $$;$$", "a",   ",", "';'",    "\";\"", "selec ", " E'\\';'", " create function ",
        "=",     "\n",
    };
    const char *const starts[] = {"", "", "create function f() begin atomic select 1;",
                                  "Create /**/ or\nreplace PROCEDURE p() Begin Atomic "};
    std::mt19937 random(1);
    const auto mark = QStringLiteral("select 'next';\n");
    QStringList texts;
    QString script;
    for (int i = 0; i < 2'000; ++i) {
        texts += randomText(random, starts, 1) + randomText(random, parts, 20);
        // The command drops what has no semicolon yet, with all that is open in it.
        script += mark + texts.last() + QStringLiteral("\n\\r\n");
    }
    QList<QStringList> expected;
    for (const QString &statement : statementsOf(sentByPsql(script))) {
        if (statement == statementOf(mark))
            expected.emplace_back();
        else if (!expected.isEmpty())
            expected.last() += statement;
    }
    ASSERT_EQ(expected.size(), texts.size());
    for (qsizetype i = 0; i < texts.size(); ++i) {
        QStringList pieces = statementsOf(piecesOf(texts[i]));
        ASSERT_LE(pieces.size() - expected[i].size(), 1) << qPrintable(texts[i]);
        ASSERT_EQ(pieces.first(qMin(pieces.size(), expected[i].size())), expected[i])
            << qPrintable(texts[i]);
    }
}

TEST(SQLCorpus, losesNothingOfTextsCutAnywhere)
{
    std::mt19937 random(1);
    const QList<SQLCorpus::Script> &scripts = SQLCorpus::scripts();
    for (int i = 0; i < 3'000 && !scripts.isEmpty(); ++i) {
        const auto &[name, whole] = scripts[static_cast<qsizetype>(random()) % scripts.size()];
        const qsizetype from = static_cast<qsizetype>(random()) % (whole.size() + 1);
        const QString text = whole.mid(from, static_cast<qsizetype>(random() % 3'000));
        ASSERT_EQ(piecesOf(text).join(QString()), text) << qPrintable(name) << " from " << from;
        ASSERT_EQ(faultOfTokens(text), QString()) << qPrintable(name) << " from " << from;
    }
}

} // namespace
