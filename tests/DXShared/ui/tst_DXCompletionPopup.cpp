// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXCompletionPopup.h"

#include "editing/DXCompletionCache.h"
#include "support/DXWait.h"
#include "support/FakeCompletion.h"
#include "support/PrintQt.h"
#include "ui/editor/DXCompletionModel.h"
#include "ui/editor/DXSQLEditor.h"

#include <QAbstractItemModelTester>
#include <QListView>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace
{

class DXCompletionPopupTest : public testing::Test
{
protected:
    DXCompletionPopupTest()
    {
        auto &names = *details->helper;
        names.add(u"public"_qs, u"orders"_qs, {u"id int"_qs, u"placed_at date"_qs});
        names.add(u"public"_qs, u"order_items"_qs, {u"id int"_qs});
        names.publish(details->description());
        const auto cache = DXCompletionCache::of(details);
        EXPECT_TRUE(DXWait::until([&] { return cache->names() != nullptr; }));
        popup->setCompletion(std::make_shared<DXSQLCompletion>(details));
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(editor);
        window.resize(600, 400);
        window.show();
        window.activateWindow();
        editor->setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void type(const QString &keys) const
    {
        for (const QChar key : keys)
            QTest::keyClick(editor, key.toLatin1());
        editor->grab();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(editor, key, modifiers);
        editor->grab();
    }
    void clear() const { editor->setText(QString()); }

    const std::shared_ptr<FakeCompletionDBC> details = std::make_shared<FakeCompletionDBC>();
    QWidget window;
    DXSQLEditor *const editor = new DXSQLEditor({.options = {}, .keywords = {}});
    DXCompletionPopup *const popup = new DXCompletionPopup(*editor);
    QAbstractItemModelTester tester{popup->findChild<DXCompletionModel *>()};
};

TEST_F(DXCompletionPopupTest, opensByItselfWhereNamesAreTyped)
{
    const struct
    {
        QString typed;
        bool isOpen;
    } cases[] = {
        {u"select * from o"_qs, false},      {u"select * from or"_qs, true},
        {u"select * from public."_qs, true}, {u"select * from or "_qs, false},
        {u"select * from 'or"_qs, false},    {u"select -- or"_qs, false},
        {u"select * from orders"_qs, false}, {u"select * from \"or"_qs, true},
    };
    for (const auto &[typed, isOpen] : cases) {
        clear();
        type(typed);
        EXPECT_EQ(popup->isVisible(), isOpen) << typed.toStdString();
    }
    popup->setOpensByItself(false);
    clear();
    type(u"select * from or"_qs);
    EXPECT_FALSE(popup->isVisible());
}

TEST_F(DXCompletionPopupTest, leavesReturnToTheTextUntilSomebodyChose)
{
    type(u"select * from or"_qs);
    ASSERT_TRUE(popup->isVisible());
    press(Qt::Key_Return);
    EXPECT_EQ(editor->text(), u"select * from or\n"_qs);
    EXPECT_FALSE(popup->isVisible());

    clear();
    type(u"select * from or"_qs);
    press(Qt::Key_Tab);
    EXPECT_EQ(editor->text(), u"select * from order_items"_qs);
    editor->undo();
    EXPECT_EQ(editor->text(), u"select * from or"_qs);

    clear();
    type(u"select * from or"_qs);
    press(Qt::Key_Down);
    // Colours that are made later choose nothing else.
    editor->SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
    QApplication::processEvents();
    press(Qt::Key_Return);
    EXPECT_EQ(editor->text(), u"select * from orders"_qs);

    clear();
    type(u"select * from "_qs);
    press(Qt::Key_Space, Qt::ControlModifier);
    ASSERT_TRUE(popup->isVisible());
    press(Qt::Key_Return);
    EXPECT_EQ(editor->text(), u"select * from order_items"_qs);
}

TEST_F(DXCompletionPopupTest, narrowsWhileTypingAndClosesBehindTheName)
{
    auto *const model = popup->findChild<DXCompletionModel *>();
    type(u"select * from or"_qs);
    const int many = model->rowCount();
    type(u"der_"_qs);
    EXPECT_TRUE(popup->isVisible());
    EXPECT_LT(model->rowCount(), many);
    press(Qt::Key_Backspace);
    EXPECT_EQ(model->rowCount() > 1, true);
    press(Qt::Key_Home);
    EXPECT_FALSE(popup->isVisible());
    press(Qt::Key_End);
    type(u"_"_qs);
    EXPECT_TRUE(popup->isVisible());
    type(u","_qs);
    EXPECT_FALSE(popup->isVisible());
}

TEST_F(DXCompletionPopupTest, closesOnEscapeAndNothingElse)
{
    int escapes = 0;
    QAction other;
    other.setShortcut(Qt::Key_Escape);
    window.addAction(&other);
    QObject::connect(&other, &QAction::triggered, &window, [&] { ++escapes; });
    type(u"select * from or"_qs);
    press(Qt::Key_Escape);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(escapes, 0);
    press(Qt::Key_Escape);
    EXPECT_EQ(escapes, 1);
    EXPECT_EQ(editor->text(), u"select * from or"_qs);
}

TEST_F(DXCompletionPopupTest, goesWithItsEditor)
{
    type(u"select * from or"_qs);
    ASSERT_EQ(popup->parentWidget(), &window);
    const QPointer<DXCompletionPopup> watched(popup);
    delete editor;
    EXPECT_TRUE(DXWait::until([&] { return watched.isNull(); }));
}

} // namespace
