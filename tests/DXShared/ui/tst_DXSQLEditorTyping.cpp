// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLEditor.h"

#include "support/DXWait.h"
#include "support/PrintQt.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTest>

#include <gtest/gtest.h>

namespace
{

using Base = QsciScintillaBase;

class DXSQLEditorTypingTest : public testing::Test
{
protected:
    DXSQLEditorTypingTest()
    {
        editor.resize(600, 400);
        editor.show();
    }
    long send(unsigned int message, long value = 0) const
    {
        return editor.SendScintilla(message, value);
    }
    /// Each line's depth, with a plus where something folds.
    QString folds() const
    {
        editor.SendScintilla(Base::SCI_COLOURISE, 0UL, -1L);
        QStringList shown;
        for (int line = 0; line < editor.lines(); ++line) {
            const long level = send(Base::SCI_GETFOLDLEVEL, line);
            shown +=
                QString::number((level & Base::SC_FOLDLEVELNUMBERMASK) - Base::SC_FOLDLEVELBASE)
                + ((level & Base::SC_FOLDLEVELHEADERFLAG) ? u"+"_qs : QString());
        }
        return shown.join(u' ');
    }
    QString shownLines() const
    {
        QStringList shown;
        for (int line = 0; line < editor.lines(); ++line) {
            if (send(Base::SCI_GETLINEVISIBLE, line))
                shown += QString::number(line);
        }
        return shown.join(u' ');
    }
    /// Types keys; the caret is shown as |, a line break is \n and a Backspace \b.
    QString type(const QString &keys)
    {
        for (const QChar key : keys) {
            if (key == u'\n')
                QTest::keyClick(&editor, Qt::Key_Return);
            else if (key == u'\b')
                QTest::keyClick(&editor, Qt::Key_Backspace);
            else
                QTest::keyClick(&editor, key.toLatin1());
        }
        return editor.text().insert(editor.caretPosition(), u'|');
    }
    QString typeInto(const QString &text, const QString &keys)
    {
        const qsizetype caret = text.indexOf(u'|');
        editor.setText(QString(text).remove(caret, 1));
        editor.setCaretPosition(caret);
        return type(keys);
    }
    void trigger(const QString &command)
    {
        editor.findChild<QAction *>(u"editor."_qs + command)->trigger();
    }

    mutable DXSQLEditor editor{{.options = {}, .keywords = {u"SELECT"_qs}}};
};

TEST_F(DXSQLEditorTypingTest, foldsWhatTheTokenizerSays)
{
    editor.setText(u"select (\n  1\n), f(\n  ')('\n);\n-- (\nselect 1; select\n2; /* (\n;\n*/\n"
                   "create function f() as $$\nselect (1;\n$$;\nselect 2; select\n3"_qs);
    EXPECT_EQ(folds(), u"0+ 2 1+ 2 2 0 0+ 0+ 1 1 0+ 2 2 0+ 1"_qs);
    // What an edit opens deepens everything up to where it closes.
    editor.insertAt(u"("_qs, 0, 0);
    EXPECT_EQ(folds(), u"0+ 3 2+ 3 3 2 2 2+ 3 3 2+ 3 3 2 2"_qs);
    editor.undo();
    EXPECT_EQ(folds(), u"0+ 2 1+ 2 2 0 0+ 0+ 1 1 0+ 2 2 0+ 1"_qs);

    editor.setCursorPosition(3, 0);
    editor.toggleFoldAtCaret();
    EXPECT_EQ(shownLines(), u"0 1 2 5 6 7 8 9 10 11 12 13 14"_qs);
    editor.foldAll();
    EXPECT_EQ(shownLines(), u"0 5 6 7 10 13"_qs);
    editor.setCaretPosition(12);
    EXPECT_EQ(shownLines(), u"0 1 2 5 6 7 10 13"_qs);
}

TEST_F(DXSQLEditorTypingTest, indentsAndClosesWhatIsTyped)
{
    const struct
    {
        const QString text;
        const QString keys;
        const QString result;
    } cases[] = {
        // Whoever types the closing one gets what was typed.
        {u"|"_qs, u"f('a', (1))"_qs, u"f('a', (1))|"_qs},
        {u"|"_qs, u"f(\b"_qs, u"f|"_qs},
        {u"|"_qs, u"('"_qs, u"('|')"_qs},
        // Nothing closes in a word, a string or a comment, or before something.
        {u"it|"_qs, u"'"_qs, u"it'|"_qs},
        {u"'a|"_qs, u"("_qs, u"'a(|"_qs},
        {u"-- a |"_qs, u"('"_qs, u"-- a ('|"_qs},
        {u"|a"_qs, u"("_qs, u"(|a"_qs},
        {u"'a'|"_qs, u"'"_qs, u"'a''|"_qs},
        {u"  select 1|"_qs, u"\nx"_qs, u"  select 1\n  x|"_qs},
        {u"|"_qs, u"f(\nx"_qs, u"f(\n    x|\n)"_qs},
        {u"f(|"_qs, u"\nx\n)"_qs, u"f(\n    x\n)|"_qs},
        {u"select\n    1|"_qs, u";\nx"_qs, u"select\n    1;\nx|"_qs},
        {u"'(|"_qs, u"\nx"_qs, u"'(\nx|"_qs},
    };
    for (const auto &[text, keys, result] : cases)
        EXPECT_EQ(typeInto(text, keys), result);
}

TEST_F(DXSQLEditorTypingTest, pairsBracketsOutsideOfStringsAndComments)
{
    editor.setText(u"f('(', /* ( */ (1)\n, $$ ) $$ -- )\n) ]"_qs);
    const auto styleAt = [this](int line, int column, int lookLine, int lookColumn) {
        editor.setCursorPosition(line, column);
        QApplication::processEvents();
        const QImage shown = editor.grab().toImage();
        const auto where = editor.positionFromLineIndex(lookLine, lookColumn);
        const QPoint at(
            int(editor.SendScintilla(Base::SCI_POINTXFROMPOSITION, 0UL, long(where))) + 1,
            int(editor.SendScintilla(Base::SCI_POINTYFROMPOSITION, 0UL, long(where))) + 1);
        return shown.pixelColor(at);
    };
    const QColor plain = styleAt(1, 0, 2, 0);
    EXPECT_NE(styleAt(0, 2, 2, 0), plain);
    EXPECT_NE(styleAt(2, 1, 0, 1), plain);
    EXPECT_EQ(styleAt(0, 4, 2, 0), plain);
}

TEST_F(DXSQLEditorTypingTest, movesAndDuplicatesLines)
{
    editor.setText(u"a\nb\nc"_qs);
    editor.setCursorPosition(1, 1);
    trigger(u"moveUp"_qs);
    EXPECT_EQ(editor.text(), u"b\na\nc"_qs);
    editor.setSelection(0, 0, 2, 0);
    trigger(u"duplicate"_qs);
    EXPECT_EQ(editor.text(), u"b\na\nb\na\nc"_qs);
    EXPECT_EQ(editor.selectedText(), u"b\na\n"_qs);
    editor.undo();
    editor.setSelection(0, 0, 0, 1);
    editor.setText(u"x y x"_qs);
    editor.setSelection(0, 0, 0, 1);
    trigger(u"selectNext"_qs);
    type(u"zz"_qs);
    EXPECT_EQ(editor.text(), u"zz y zz"_qs);
}

TEST_F(DXSQLEditorTypingTest, leavesTheWindowItsKeys)
{
    for (const int key : {Qt::Key_T, Qt::Key_Y, Qt::Key_L, Qt::Key_D, Qt::Key_Slash, Qt::Key_U}) {
        QKeyEvent event(QEvent::ShortcutOverride, key, Qt::ControlModifier);
        event.ignore();
        QApplication::sendEvent(&editor, &event);
        EXPECT_FALSE(event.isAccepted()) << key;
    }
    typeInto(u"|"_qs, u"ab"_qs);
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor.text(), QString());
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(editor.text(), u"ab"_qs);
}

TEST_F(DXSQLEditorTypingTest, takesDroppedTextWhereItFalls)
{
    editor.setText(u"select \nfrom t"_qs);
    QMimeData dragged;
    dragged.setText(u"public.orders"_qs);
    const auto where = static_cast<long>(editor.positionFromLineIndex(0, 7));
    const QPoint at(int(editor.SendScintilla(Base::SCI_POINTXFROMPOSITION, 0UL, where)),
                    int(editor.SendScintilla(Base::SCI_POINTYFROMPOSITION, 0UL, where)) + 3);
    QDragEnterEvent enter(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(editor.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(editor.viewport(), &drop);
    EXPECT_EQ(editor.text(), u"select public.orders\nfrom t"_qs);
}

TEST_F(DXSQLEditorTypingTest, tellsWhatSurroundsTheCaret)
{
    editor.setText(u"select 'ä';\nselect 😀,\n2\n, 3; select 4"_qs);
    editor.setCursorPosition(2, 1);
    auto around = editor.surroundings();
    EXPECT_EQ(around.text.insert(around.caret, u'|'), u"select 😀,\n2|\n, 3; select 4"_qs);
    editor.replaceAroundCaret(5, 2, u"ß"_qs);
    EXPECT_EQ(editor.text(), u"select 'ä';\nselect ß 3; select 4"_qs);
    EXPECT_EQ(editor.caretPosition(), 20);
    editor.undo();
    EXPECT_EQ(editor.text(), u"select 'ä';\nselect 😀,\n2\n, 3; select 4"_qs);
}

TEST_F(DXSQLEditorTypingTest, colorsTheEndOfALargeTextAndThenItsMiddle)
{
    const QString row = u"select 'text', 12 from orders where id = (1);\n"_qs;
    editor.setText(row.repeated(30'000));
    const auto keywordAt = [this](int line) {
        editor.setFirstVisibleLine(line);
        editor.grab();
        return send(Base::SCI_GETSTYLEAT, send(Base::SCI_POSITIONFROMLINE, line)) == 1;
    };
    EXPECT_TRUE(keywordAt(29'990));
    EXPECT_TRUE(keywordAt(15'000));
    EXPECT_TRUE(keywordAt(10));
    // A comment that opens at the top reaches to where the text is looked at, and no further.
    editor.insertAt(u"/*"_qs, 0, 0);
    EXPECT_FALSE(keywordAt(29'000));
    EXPECT_FALSE(keywordAt(14'000));
    editor.undo();
    EXPECT_TRUE(keywordAt(29'000));
}

} // namespace
