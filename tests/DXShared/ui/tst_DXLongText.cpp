// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Widgets.h"
#include "ui/DXLongText.h"
#include "ui/DXMessageArea.h"
#include "ui/query/DXMessageView.h"
#include "ui/results/DXValueView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gmock/gmock.h>

using namespace Widgets;

namespace
{

constexpr auto atWords = QTextOption::WrapAtWordBoundaryOrAnywhere;
constexpr auto anywhere = QTextOption::WrapAnywhere;

TEST(DXLongText, isShownAsFarAsItIsLaidOutQuickly)
{
    const QString words = u"some words "_qs.repeated(100'000);
    const QString lines = u"a line of a log\n"_qs.repeated(100'000);
    const QString digits = u"0f"_qs.repeated(500'000);
    const struct
    {
        const char *what;
        QString text;
        QTextOption::WrapMode mode;
        qsizetype shown;
    } texts[] = {
        {"nothing", {}, atWords, 0},
        {"a word", u"word"_qs, atWords, 4},
        {"words in one line", words, atWords, 262'144},
        {"short lines", lines, atWords, lines.size()},
        {"very many short lines", lines.repeated(3), atWords, 4'194'304},
        {"digits", digits, anywhere, 262'144},
        {"digits behind words", u"bytes: "_qs + digits, anywhere, 262'144},
        {"digits in a line of their own", lines + digits, anywhere, 262'144},
        {"half of a character at the end", u"x"_qs + u"\U0001F375"_qs.repeated(200'000), anywhere,
         262'143},
    };
    for (const auto &[what, text, mode, shown] : texts) {
        EXPECT_EQ(DXLongText::wrapMode(text), mode) << what;
        EXPECT_EQ(DXLongText::shownPart(text).size(), shown) << what;
        EXPECT_TRUE(text.startsWith(DXLongText::shownPart(text))) << what;
    }
}

// What would be laid out for minutes is the length of what is laid out, not the time of it.
TEST(DXLongText, neverHoldsUpTheValuesWindow)
{
    DXValueView view;
    const QString value = u"0123456789abcdef"_qs.repeated(3'000'000);
    view.showValue(u"data"_qs, value);
    auto &text = *named<QPlainTextEdit>(&view, u"Value"_qs);
    EXPECT_EQ(text.toPlainText().size(), 262'144);
    EXPECT_EQ(text.wordWrapMode(), anywhere);
    EXPECT_TRUE(named<QLabel>(
        &view,
        u"The first 262,144 of 48,000,000 characters are shown. Copy takes all of them."_qs));
    click<QPushButton>(&view, u"Copy"_qs);
    EXPECT_EQ(QGuiApplication::clipboard()->text().size(), value.size());

    view.showValue(u"doc"_qs, QString(u"{\"a\": [1, 2]}"_qs));
    EXPECT_EQ(text.toPlainText(), u"{\n  \"a\": [\n    1,\n    2\n  ]\n}"_qs);
    EXPECT_EQ(text.wordWrapMode(), atWords);
    const auto labels = view.findChildren<QLabel *>();
    EXPECT_EQ(std::ranges::count_if(labels, &QWidget::isVisible), 1);

    view.showValue(u"data"_qs, QByteArray("\\x00ff10"));
    EXPECT_TRUE(named<QLabel>(&view, u"data · 3 bytes"_qs));
}

TEST(DXLongText, neverHoldsUpMessages)
{
    const QString endless = u"x"_qs.repeated(300'000);
    DXMessageView messages;
    messages.append(DXMessageView::Kind::Notice, u"short"_qs);
    EXPECT_EQ(messages.wordWrapMode(), atWords);
    messages.append(DXMessageView::Kind::Notice, endless);
    EXPECT_EQ(messages.wordWrapMode(), anywhere);
    EXPECT_THAT(messages.toPlainText().toStdString(),
                testing::EndsWith("x…\nThis is the beginning of 300,000 characters."));
    messages.reset();
    EXPECT_EQ(messages.wordWrapMode(), atWords);
    DXMessageArea area;
    area.setMessage(DXMessageArea::Kind::Error, endless);
    EXPECT_EQ(area.wordWrapMode(), anywhere);
    area.setMessage(DXMessageArea::Kind::Error, u"short"_qs);
    EXPECT_EQ(area.wordWrapMode(), atWords);
}

} // namespace
