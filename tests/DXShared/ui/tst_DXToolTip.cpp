// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PrintQt.h"
#include "ui/DXToolTip.h"

#include <QLabel>
#include <QTextDocument>

#include <gmock/gmock.h>

namespace
{

/// What is read of a tooltip, which guesses as labels do whether it is markup.
QString shownAs(const QString &tip)
{
    if (!Qt::mightBeRichText(tip))
        return tip;
    QTextDocument document;
    document.setHtml(tip);
    return document.toPlainText().remove(QChar(0x200B));
}

TEST(DXToolTip, showsTextsAsTheyStand)
{
    for (const QString &text :
         {u"orders"_qs, u"<h1>big</h1>"_qs, u"R&D"_qs, u"R&amp;D"_qs, u"</div></qt><b>x"_qs,
          u"a \"quoted\" name"_qs, u"  two   blanks "_qs, u"two\nlines\n\n  and more"_qs,
          u"<img src=\"file:///etc/passwd\">"_qs, u"\u05E9\u05DC\u05D5\u05DD \U0001F375"_qs,
          u"0f"_qs.repeated(500)})
        EXPECT_EQ(shownAs(DXToolTip::plain(text)), text);
    EXPECT_TRUE(DXToolTip::plain({}).isNull());
}

TEST(DXToolTip, fitsTheScreen)
{
    const auto width = [](const QString &text) {
        QLabel label(DXToolTip::plain(text));
        label.setWordWrap(true);
        return label.sizeHint().width();
    };
    EXPECT_LT(width(u"0f"_qs.repeated(500)), 800);
    EXPECT_LT(width(u"many words "_qs.repeated(100)), 800);
    const QString cut = shownAs(DXToolTip::plain(u"\U0001F375"_qs.repeated(5000)));
    EXPECT_EQ(cut.size(), 2001);
    EXPECT_TRUE(cut.endsWith(u'…'));
}

} // namespace
