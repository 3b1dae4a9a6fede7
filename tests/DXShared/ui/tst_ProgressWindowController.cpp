// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Background.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "ui/ProgressWindowController.h"

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <gtest/gtest.h>

namespace
{

class ProgressWindowControllerTest : public testing::Test
{
protected:
    ProgressWindowControllerTest() { window.show(); }

    QDialog *sheet() const { return window.findChild<QDialog *>(); }
    bool isShown() const
    {
        return DXWait::until([this] { return sheet() && sheet()->isVisible(); });
    }
    bool isGone() const
    {
        return DXWait::until([this] { return !sheet(); });
    }

    QWidget window;
    std::shared_ptr<ProgressWindowController> progress =
        std::make_shared<ProgressWindowController>(u"Exporting database 'shop'"_qs);
};

TEST_F(ProgressWindowControllerTest, tellsHowFarTheWorkIs)
{
    int cancels = 0;
    progress->setCancelHandler([&cancels] { ++cancels; });
    progress->beginSheetForWindow(&window);
    EXPECT_FALSE(sheet()->isVisible());
    ASSERT_TRUE(isShown());
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    const auto *const bar = sheet()->findChild<QProgressBar *>();
    EXPECT_EQ(bar->maximum(), 0);

    inBackground([this] {
        progress->setProgress(25, u"Exporting table 1 of 4: a.<b>."_qs);
        return true;
    });
    EXPECT_TRUE(DXWait::until([&] { return bar->value() * 4 == bar->maximum(); }));
    const auto *const label = sheet()->findChild<QLabel *>();
    EXPECT_EQ(label->text(), u"Exporting table 1 of 4: a.<b>."_qs);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);

    QTest::mouseClick(sheet()->findChild<QPushButton *>(), Qt::LeftButton);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(sheet()->isVisible());
    progress->endSheet();
    EXPECT_TRUE(isGone());
    progress->setProgress(50, {});
}

TEST_F(ProgressWindowControllerTest, showsNothingForWorkThatEndsAtOnce)
{
    progress->beginSheetForWindow(&window);
    progress->endSheet();
    EXPECT_TRUE(isGone());
}

TEST_F(ProgressWindowControllerTest, outlivesItsWindow)
{
    auto other = std::make_unique<QWidget>();
    progress->beginSheetForWindow(other.get());
    const std::weak_ptr<ProgressWindowController> watched = progress;
    progress.reset();
    other.reset();
    ASSERT_TRUE(watched.lock());
    watched.lock()->setProgress(10, {});
    watched.lock()->endSheet();
    EXPECT_FALSE(watched.lock());
}

} // namespace
