// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/SQLTokenizer.h"

#include "DXShared/query/Tokens.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

// In the order of SQLToken::Kind.
const char *const names[] = {"blank", "line", "block", "word", "id",   "Uid",  "str",
                             "E",     "U",    "N",     "B",    "X",    "dol",  "int",
                             "dec",   "par",  "var",   "op",   "punc", "other"};

// Each token but a single space as its kind and text; < marks one that began before, > one without
// an end.
std::string written(const char *text, const SQLMetadataTokenizerOptions &options = {})
{
    const QString sql = QString::fromUtf8(text);
    std::string result;
    for (const SQLToken &token : tokensOf(sql, options)) {
        const QString part = sql.sliced(token.range.location, token.range.length);
        if (part == u" ")
            continue;
        result += result.empty() ? "" : " ";
        result += token.continuesBefore ? "<" : "";
        result += names[static_cast<std::size_t>(token.kind)];
        result += "[" + part.toStdString() + "]";
        result += token.unterminated ? ">" : "";
    }
    EXPECT_EQ(faultOfTokens(sql, options).toStdString(), "") << text;
    return result;
}

struct Case
{
    const char *text;
    const char *expected;
};

TEST(SQLTokenizer, readsWordsStringsAndNumbers)
{
    for (const auto &[text, expected] : std::initializer_list<Case>{
             {"", ""},
             {"a$1 _é Größe$ e\v\f\r\n", "word[a$1] word[_é] word[Größe$] word[e] blank[\v\f\r\n]"},
             {R"('it''s' E'\'\\' '\' e'')", R"(str['it''s'] E[E'\'\\'] str['\'] E[e''])"},
             {R"(U&'\0061''' u&"a""b" "a""b" U &'x')",
              R"(U[U&'\0061'''] Uid[u&"a""b"] id["a""b"] word[U] op[&] str['x'])"},
             {"b'01''1' X'fF'n'a''b'", "B[b'01'] str['1'] X[X'fF'] N[n'a''b']"},
             {"$$a$b$$ $q$ $$ $Q$ $qq$ $q$q$é1$$é1$",
              "dol[$$a$b$$] dol[$q$ $$ $Q$ $qq$ $q$] word[q$é1$$é1$]"},
             {"$1 $2a $ $a $1$b$;$b$ 1$a$;$a$",
              "par[$1] par[$2] word[a] other[$] other[$] word[a] par[$1] dol[$b$;$b$] "
              "int[1] dol[$a$;$a$]"},
             {"1 1. .5 1.5e-3 1E+2 1e 1e+ 1..10 1...5 a.5",
              "int[1] dec[1.] dec[.5] dec[1.5e-3] dec[1E+2] int[1] word[e] int[1] word[e] op[+] "
              "int[1] op[..] int[10] int[1] op[..] dec[.5] word[a] dec[.5]"},
             {"0x1Fg 0o17 0b_1 0x 0xg 1_000.0_1e1_0 1__0 1_",
              "int[0x1F] word[g] int[0o17] int[0b_1] int[0] word[x] int[0] word[xg] "
              "dec[1_000.0_1e1_0] int[1] word[__0] int[1] word[_]"},
             {"\\ \x01 {", "other[\\] other[\x01] other[{]"},
         })
        EXPECT_EQ(written(text), expected) << text;
}

TEST(SQLTokenizer, endsOperatorsAtCommentsAndShedsSigns)
{
    for (const auto &[text, expected] : std::initializer_list<Case>{
             {"a<-1 @-1 ->> =>- => <>-", "word[a] op[<] op[-] int[1] op[@-] int[1] op[->>] op[=>] "
                                         "op[-] op[=>] op[<>] op[-]"},
             {"+-+ *-+/ ?- -+|", "op[+] op[-] op[+] op[*-+/] op[?-] op[-+|]"},
             {"+/*x*/*-+--y", "op[+] block[/*x*/] op[*] op[-] op[+] line[--y]"},
             {"a::b := c: d[1:2];.", "word[a] op[::] word[b] op[:=] word[c] punc[:] word[d] "
                                     "punc[[] int[1] punc[:] int[2] punc[]] punc[;] punc[.]"},
             {"a#b @x @@y =@z",
              "word[a] op[#] word[b] op[@] word[x] op[@@] word[y] op[=@] word[z]"},
         })
        EXPECT_EQ(written(text), expected) << text;
}

TEST(SQLTokenizer, readsCommentsAndGoesOnWithStrings)
{
    for (const auto &[text, expected] : std::initializer_list<Case>{
             {"a--b\rc", "word[a] line[--b] blank[\r] word[c]"},
             {"/**//***//*/*/ */x*/y", "block[/**/] block[/***/] block[/*/*/ */x*/] word[y]"},
             {"'a'\n'b' 'c' '\n'", "str['a'] blank[\n] <str['b'] str['c'] str['\n']"},
             {"E'a' --x\n  '\\';'\t'd'",
              "E[E'a'] line[--x] blank[\n  ] <E['\\';'] blank[\t] str['d']"},
             {"E'a' /**/\n'\\'", "E[E'a'] block[/**/] blank[\n] str['\\']"},
         })
        EXPECT_EQ(written(text), expected) << text;
}

TEST(SQLTokenizer, marksWhatNeverEnds)
{
    for (const auto &[text, expected] : std::initializer_list<Case>{
             {"'a\nb''", "str['a\nb'']>"},
             {"E'a\\", "E[E'a\\]>"},
             {"E'\\\n';'", "E[E'\\\n'] punc[;] str[']>"},
             {"\"", "id[\"]>"},
             {"U&\"a\"\"\n", "Uid[U&\"a\"\"\n]>"},
             {"x'", "X[x']>"},
             {"/*/*\n*/", "block[/*/*\n*/]>"},
             {"/*", "block[/*]>"},
             {"/*/", "block[/*/]>"},
             {"$é$\n$é", "dol[$é$\n$é]>"},
             {"$$\n$", "dol[$$\n$]>"},
         })
        EXPECT_EQ(written(text), expected) << text;
}

TEST(SQLTokenizer, obeysTheOptions)
{
    SQLMetadataTokenizerOptions options;
    options.setHashMarksAreComments(true);
    options.setAllowNestedMultilineComments(false);
    options.setIncludeMSSQLVariables(true);
    EXPECT_EQ(written("a#b'\n+#c", options), "word[a] line[#b'] blank[\n] op[+] line[#c]");
    EXPECT_EQ(written("/*/*\n*/ 1 */", options), "block[/*/*\n*/] int[1] op[*/]");
    EXPECT_EQ(written("@a1 =@@b+@ @1 @@@c", options),
              "var[@a1] op[=] var[@@b] op[+@] op[@] int[1] op[@] var[@@c]");
}

// Each of these takes hours where some part is read again and again.
TEST(SQLTokenizer, takesLinearTime)
{
    for (const char *unit :
         {"+", "-+", "$", "$a", "@", "/*", "'", "e'\\", "1_", "1e+", "1.", "_"}) {
        const QString text = QString::fromLatin1(unit).repeated(300'000);
        EXPECT_EQ(faultOfTokens(text).toStdString(), "") << unit;
    }
}

} // namespace
