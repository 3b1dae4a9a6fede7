// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliErrorMark.h"

#include "support/PrintQt.h"

#include <QList>

#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

struct Case
{
    QString text;
    // What is marked; its first place in the text.
    QString marked;
    QString shown;
};

void PrintTo(const Case &tested, std::ostream *out)
{
    *out << tested.text.toStdString();
}

class CliErrorMarkTest : public TestWithParam<Case>
{ };

TEST_P(CliErrorMarkTest, UnderlinesWhatFailed)
{
    const auto &[text, marked, shown] = GetParam();
    const DXTextRange range{text.indexOf(marked), marked.size()};
    EXPECT_EQ(CliErrorMark::render(text, {range}), shown);
}

INSTANTIATE_TEST_SUITE_P(Places, CliErrorMarkTest,
                         Values(Case{u"selec 1"_qs, u"selec"_qs,
                                     u"Line 1: selec 1\n"
                                     "        ^^^^^"_qs},
                                Case{u"SELECT 1;\nSELECT * FORM t\nWHERE a"_qs, u"FORM"_qs,
                                     u"Line 2: SELECT * FORM t\n"
                                     "                 ^^^^"_qs},
                                Case{u"a\tb\x1b\t漢字 nope"_qs, u"nope"_qs,
                                     u"Line 1: a       b\\x1B   漢字 nope\n"
                                     "                             ^^^^"_qs},
                                Case{u"SELECT '漢🙂', 漢x"_qs, u"漢x"_qs,
                                     u"Line 1: SELECT '漢🙂', 漢x\n"
                                     "                       ^^^"_qs},
                                Case{u"a\r\nb c\r\n"_qs, u"c"_qs,
                                     u"Line 2: b c\n"
                                     "          ^"_qs},
                                // Of several lines the first is enough.
                                Case{u"SELECT (a\nb"_qs, u"(a\nb"_qs,
                                     u"Line 1: SELECT (a\n"
                                     "               ^^"_qs}));

TEST(CliErrorMark, MarksTheEndOfTheTextAndSeveralPlaces)
{
    EXPECT_EQ(CliErrorMark::render(u"SELECT\n"_qs, {{7, 0}}), u"Line 2: \n        ^"_qs);
    EXPECT_EQ(CliErrorMark::render(u"SELECT"_qs, {{6, 0}}), u"Line 1: SELECT\n              ^"_qs);
    EXPECT_EQ(CliErrorMark::render(u"a\nb"_qs, {{0, 1}, {2, 1}}),
              u"Line 1: a\n        ^\nLine 2: b\n        ^"_qs);
    EXPECT_EQ(CliErrorMark::render(u"a"_qs, {{2, 1}, {-1, 3}}), QString());
    EXPECT_EQ(CliErrorMark::render(u"a"_qs, {{0, 99}}), u"Line 1: a\n        ^"_qs);
}

TEST(CliErrorMark, CutsALongLineAroundTheMark)
{
    const QString text = QString(1'000'000, u'x') + u" nope "_qs + QString(1'000'000, u'y');
    const QStringList lines =
        CliErrorMark::render(text, {{text.indexOf(u"nope"_qs), 4}}).split(u'\n');
    ASSERT_EQ(lines.size(), 2);
    EXPECT_LT(lines[0].size(), 200);
    EXPECT_TRUE(lines[0].startsWith(u"Line 1: ...x"_qs));
    EXPECT_TRUE(lines[0].endsWith(u"y..."_qs));
    EXPECT_EQ(lines[0].indexOf(u"nope"_qs), lines[1].indexOf(u'^'));
    EXPECT_TRUE(lines[1].endsWith(u" ^^^^"_qs));
}

} // namespace
