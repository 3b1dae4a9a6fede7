// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXFindBar.h"

#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "ui/editor/DXSQLEditor.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace
{

class DXFindBarTest : public testing::Test
{
protected:
    DXFindBarTest()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(editor);
        layout->addWidget(bar);
        window.resize(700, 400);
        window.show();
        window.activateWindow();
        editor->setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    QLineEdit *field(const QString &name) const
    {
        for (QLineEdit *each : bar->findChildren<QLineEdit *>()) {
            if (each->accessibleName() == name)
                return each;
        }
        return nullptr;
    }
    QToolButton *button(const QString &name) const
    {
        for (QToolButton *each : bar->findChildren<QToolButton *>()) {
            if (each->accessibleName() == name)
                return each;
        }
        return nullptr;
    }
    void look(const QString &wanted) const { field(u"Find"_qs)->setText(wanted); }
    /// Waits for the bar to say so.
    bool says(const QString &text) const
    {
        return DXWait::until([&] {
            for (const QLabel *label : bar->findChildren<QLabel *>()) {
                if (label->isVisible() && label->text() == text)
                    return true;
            }
            return false;
        });
    }
    /// The selection in brackets.
    QString selected() const
    {
        const DXTextRange range = editor->selectedRange();
        return editor->text().insert(range.end(), u']').insert(range.location, u'[');
    }
    QList<int> marks() const
    {
        QList<int> found;
        for (int byte = 0; byte < editor->length(); ++byte) {
            if (editor->SendScintilla(QsciScintillaBase::SCI_INDICATORVALUEAT,
                                      static_cast<unsigned long>(DXSQLEditor::FirstFreeIndicator),
                                      long(byte)))
                found += byte;
        }
        return found;
    }

    QWidget window;
    DXSQLEditor *const editor = new DXSQLEditor({.options = {}, .keywords = {}});
    DXFindBar *const bar = new DXFindBar(*editor);
};

TEST_F(DXFindBarTest, findsFromTheCaretOnAndAround)
{
    editor->setText(u"ä one\nOne two\none"_qs);
    editor->setCaretPosition(4);
    QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(bar->isVisible());
    EXPECT_TRUE(field(u"Find"_qs)->hasFocus());
    look(u"one"_qs);
    ASSERT_TRUE(says(u"2 of 3"_qs));
    EXPECT_EQ(selected(), u"ä one\n[One] two\none"_qs);
    editor->grab();
    EXPECT_EQ(marks(), QList<int>({3, 4, 5, 7, 8, 9, 15, 16, 17}));
    QTest::keyClick(field(u"Find"_qs), Qt::Key_Return);
    EXPECT_TRUE(says(u"3 of 3"_qs));
    QTest::keyClick(field(u"Find"_qs), Qt::Key_F3);
    EXPECT_TRUE(says(u"1 of 3"_qs));
    QTest::keyClick(field(u"Find"_qs), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(says(u"3 of 3"_qs));
    QTest::keyClick(field(u"Find"_qs), Qt::Key_C, Qt::AltModifier);
    EXPECT_TRUE(says(u"2 of 2"_qs));
    look(u"on"_qs);
    EXPECT_TRUE(says(u"2 of 2"_qs));
    QTest::keyClick(field(u"Find"_qs), Qt::Key_W, Qt::AltModifier);
    EXPECT_TRUE(says(u"No matches"_qs));
    // What is edited is looked at again.
    editor->insertAt(u"on "_qs, 0, 0);
    EXPECT_TRUE(says(u"1 match"_qs));

    QTest::keyClick(field(u"Find"_qs), Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_TRUE(editor->hasFocus());
    EXPECT_EQ(marks(), QList<int>());
    QTest::keyClick(editor, Qt::Key_F3);
    EXPECT_TRUE(DXWait::until([&] { return selected().startsWith(u"[on] "); }));
}

TEST_F(DXFindBarTest, saysWhatIsWrongWithAnExpression)
{
    editor->setText(u"a1 b22"_qs);
    bar->openToFind();
    button(u"Regular expression"_qs)->click();
    look(u"(\\d"_qs);
    EXPECT_TRUE(says(u"missing closing parenthesis (at character 4)"_qs));
    look(u"^|$"_qs);
    EXPECT_TRUE(says(u"No matches"_qs));
    look(u"\\d+"_qs);
    EXPECT_TRUE(says(u"1 of 2"_qs));
    EXPECT_EQ(selected(), u"a[1] b22"_qs);
}

TEST_F(DXFindBarTest, replacesOneAndAllAsOneStep)
{
    editor->setText(u"a=1, b=2\nc=3"_qs);
    bar->openToReplace();
    button(u"Regular expression"_qs)->click();
    look(u"(\\w)=(\\d)"_qs);
    field(u"Replace with"_qs)->setText(u"$2:\\1"_qs);
    ASSERT_TRUE(says(u"1 of 3"_qs));
    button(u"Replace this match"_qs)->click();
    ASSERT_TRUE(says(u"1 of 2"_qs));
    EXPECT_EQ(selected(), u"1:a, [b=2]\nc=3"_qs);
    QTest::keyClick(field(u"Replace with"_qs), Qt::Key_Return,
                    Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(says(u"Replaced 2"_qs));
    EXPECT_EQ(editor->text(), u"1:a, 2:b\n3:c"_qs);
    editor->undo();
    EXPECT_EQ(editor->text(), u"1:a, b=2\nc=3"_qs);
}

TEST_F(DXFindBarTest, keepsToTheSelectedLines)
{
    editor->setText(u"x\nx x\nx\nx"_qs);
    editor->setSelection(1, 0, 2, 1);
    bar->openToReplace();
    look(u"x"_qs);
    ASSERT_TRUE(says(u"1 of 3"_qs));
    field(u"Replace with"_qs)->setText(u"yy"_qs);
    button(u"Replace all matches"_qs)->click();
    EXPECT_EQ(editor->text(), u"x\nyy yy\nyy\nx"_qs);
    look(u"y"_qs);
    EXPECT_TRUE(says(u"1 of 6"_qs));
    button(u"Only in the selected lines"_qs)->click();
    look(u"x"_qs);
    EXPECT_TRUE(says(u"2 of 2"_qs));
    bar->dismiss();

    editor->setSelection(1, 0, 1, 2);
    bar->openToFind();
    EXPECT_EQ(field(u"Find"_qs)->text(), u"yy"_qs);
    EXPECT_TRUE(says(u"1 of 3"_qs));
}

} // namespace
