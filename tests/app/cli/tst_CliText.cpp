// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliText.h"

#include "support/PrintQt.h"

#include <QList>

#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

TEST(CliText, ShowsWhatDoesNotPrintAsEscapes)
{
    const QList<std::pair<QString, QString>> cases{
        {u"plain text"_qs, u"plain text"_qs},
        {u"Grüße 漢字 🙂"_qs, u"Grüße 漢字 🙂"_qs},
        {u"a\nb\tc\rd"_qs, u"a\\nb\\tc\\rd"_qs},
        {u"\x1b[31mred\x07\x7f"_qs, u"\\x1B[31mred\\x07\\x7F"_qs},
        // A terminal takes this one for the beginning of a command, too.
        {u"\u009b31m"_qs, u"\\x9B31m"_qs},
        {u"right\u202eto left"_qs, u"right\\u202Eto left"_qs},
        {u"a\u200bb\u2028c\ufeff"_qs, u"a\\u200Bb\\u2028c\\uFEFF"_qs},
        {u"\U000E0041"_qs, u"\\U000E0041"_qs},
        {QString(QChar(0xD800)) + u'x', u"\\uD800x"_qs},
        {QString(QChar(0)), u"\\x00"_qs},
        // A joiner makes one sign of two.
        {u"👩\u200d🚀"_qs, u"👩\u200d🚀"_qs}};
    for (const auto &[text, shown] : cases)
        EXPECT_EQ(CliText::printable(text), shown);
}

TEST(CliText, LinesKeepTheirBreaksAndAlignTheirTabs)
{
    EXPECT_EQ(CliText::printableLines(u"a\tb\r\n\tc\x1b\n漢\td"),
              u"a       b\n        c\\x1B\n漢      d"_qs);
    EXPECT_EQ(CliText::printableLines(u"ends\n"), u"ends\n"_qs);
    EXPECT_EQ(CliText::printableLines(u""), QString());
}

TEST(CliText, CountsTheColumnsOfATerminal)
{
    EXPECT_EQ(CliText::width(u"plain"), 5);
    EXPECT_EQ(CliText::width(u"Grüße"), 5);
    EXPECT_EQ(CliText::width(u"漢字"), 4);
    EXPECT_EQ(CliText::width(u"e\u0301"), 1);
    EXPECT_EQ(CliText::width(u"🙂!"), 3);
    EXPECT_EQ(CliText::width(u""), 0);
}

} // namespace
