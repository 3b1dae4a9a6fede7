// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PrintQt.h"
#include "ui/query/DXMessageView.h"

#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace
{

using Kind = DXMessageView::Kind;

QList<DXMessageView::Message> numbered(int first, int last)
{
    QList<DXMessageView::Message> messages;
    for (int number = first; number <= last; ++number)
        messages.append({Kind::Notice, QTime(1, 2, 3), QString::number(number)});
    return messages;
}

TEST(DXMessageView, ShowsWhenEachMessageCame)
{
    DXMessageView view;
    view.append({{Kind::Notice, QTime(23, 59, 59), u"<b>late</b>"_qs},
                 {Kind::Error, QTime(0, 0, 1), u"early\nin the day"_qs}});
    EXPECT_EQ(view.toPlainText(), u"23:59:59  <b>late</b>\n00:00:01  early\nin the day"_qs);
}

TEST(DXMessageView, KeepsTheLastMessagesAndCountsTheOthers)
{
    DXMessageView view;
    view.append({{Kind::Error, QTime(4, 5, 6), u"in\ntwo\rlines"_qs}});
    view.append(numbered(1, 9999));
    EXPECT_EQ(view.blockCount(), 9999 + 3);
    struct Step
    {
        int first;
        int last;
        qint64 leftOut;
        const char *above;
        const char *oldest;
    };
    const Step steps[] = {
        {10000, 10000, 0, "1 earlier message was left out.", "01:02:03  1"},
        {10001, 10005, 0, "6 earlier messages were left out.", "01:02:03  6"},
        {10006, 40000, 0, "30001 earlier messages were left out.", "01:02:03  30001"},
        {40001, 50000, 7, "40008 earlier messages were left out.", "01:02:03  40001"},
    };
    for (const Step &step : steps) {
        view.append(numbered(step.first, step.last), step.leftOut);
        const QStringList lines = view.toPlainText().split(u'\n');
        ASSERT_EQ(lines.size(), 10001);
        EXPECT_EQ(QString(lines[0]).remove(u','), QString::fromUtf8(step.above));
        EXPECT_EQ(lines[1], QString::fromUtf8(step.oldest));
        EXPECT_EQ(lines[10000], u"01:02:03  %1"_qs.arg(step.last));
    }
    const QString before = view.toPlainText();
    QPalette dark = view.palette();
    dark.setColor(QPalette::Base, Qt::black);
    view.setPalette(dark);
    EXPECT_EQ(view.toPlainText(), before);
    view.reset();
    view.append(numbered(1, 1));
    EXPECT_EQ(view.toPlainText(), u"01:02:03  1"_qs);
}

TEST(DXMessageView, FollowsTheEndUnlessSomebodyReadsAbove)
{
    DXMessageView view;
    view.resize(300, 200);
    view.setVisible(true);
    view.append(numbered(1, 100));
    const QScrollBar &bar = *view.verticalScrollBar();
    EXPECT_EQ(bar.value(), bar.maximum());
    view.verticalScrollBar()->setValue(10);
    view.append(numbered(101, 200));
    EXPECT_EQ(bar.value(), 10);
}

} // namespace
