// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXTheme.h"
#include "ui/editor/DXSQLEditor.h"

#include <QTest>

#include <gtest/gtest.h>

namespace
{

class DXSQLEditorTest : public testing::Test
{
protected:
    static DXSQLEditor::Init postgres()
    {
        SQLMetadataTokenizerOptions options;
        options.setAllowNestedMultilineComments(true);
        return {.options = options, .keywords = {u"SELECT"_qs, u"from"_qs}};
    }
    DXSQLEditorTest()
    {
        editor.resize(600, 400);
        editor.show();
    }

    /// A letter for the style of each character of the text, in UTF-16 code units.
    QString styles() const
    {
        editor.SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
        QString shown;
        long byte = 0;
        const QString text = editor.text();
        for (qsizetype i = 0; i < text.size(); ++i) {
            shown += QLatin1Char(
                ".kscnqo"[editor.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, byte)]);
            byte += QStringView(text).sliced(i, 1).toUtf8().size();
        }
        return shown;
    }
    /// The text with the indicator's stretches in brackets.
    QString marked(int indicator) const
    {
        QString shown;
        bool isInside = false;
        const QByteArray text = editor.text().toUtf8();
        QByteArray bytes;
        for (qsizetype i = 0; i <= text.size(); ++i) {
            const bool isMarked =
                i < text.size()
                && editor.SendScintilla(QsciScintillaBase::SCI_INDICATORVALUEAT,
                                        static_cast<unsigned long>(indicator), long(i))
                       != 0;
            if (isMarked != std::exchange(isInside, isMarked))
                bytes += isMarked ? '[' : ']';
            bytes += text.mid(i, 1);
        }
        return QString::fromUtf8(bytes);
    }

    mutable DXSQLEditor editor{postgres()};
};

TEST_F(DXSQLEditorTest, colorsWhatTheTokenizerSays)
{
    editor.setText(u"Select 'it''s ä' /* a /* b */ c */ From \"x\" -- end\n+ $$a\nselect$$ 12"_qs);
    EXPECT_EQ(styles(), u"kkkkkk.sssssssss.ccccccccccccccccc.kkkk.qqq.cccccc.o.ssss"
                        "ssssssss.nn"_qs);
}

TEST_F(DXSQLEditorTest, colorsAnewWhatAnEditOpensOrCloses)
{
    editor.setText(u"a\nselect\nb\nselect\n*/ select"_qs);
    EXPECT_EQ(styles(), u"..kkkkkk...kkkkkk.oo.kkkkkk"_qs);
    editor.insertAt(u"/*"_qs, 1, 0);
    EXPECT_EQ(styles(), u"..ccccccccc"
                        "cccccccccc"
                        "c.kkkkkk"_qs);
    editor.undo();
    EXPECT_EQ(styles(), u"..kkkkkk...kkkkkk.oo.kkkkkk"_qs);
    editor.insertAt(u"'\n\n"_qs, 2, 0);
    editor.insertAt(u"'"_qs, 4, 1);
    EXPECT_EQ(styles(), u"..kkkkkk.sssss.kkkkkk.oo.kkkkkk"_qs);
}

TEST_F(DXSQLEditorTest, findsStatementsAndMarksThemPastOtherAlphabets)
{
    editor.setText(u"select 'ä😀';\nselect boom"_qs);
    editor.setCaretPosition(20);
    EXPECT_EQ(editor.caretPosition(), 20);
    const auto statement = editor.statementAtCaret();
    ASSERT_TRUE(statement);
    EXPECT_EQ(statement->targetQuery, u"select boom"_qs);
    EXPECT_EQ(statement->queryRange, (DXTextRange{14, 11}));
    editor.markErrors({{21, 4}});
    EXPECT_EQ(marked(QsciScintillaBase::INDIC_CONTAINER), u"select 'ä😀';\nselect [boom]"_qs);
    editor.markRunning(statement->queryRange);
    EXPECT_EQ(marked(QsciScintillaBase::INDIC_CONTAINER + 1), u"select 'ä😀';\n[select boom]"_qs);

    editor.setSelection(1, 0, 1, 11);
    const auto selected = editor.statements();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected[0].queryRange, (DXTextRange{14, 11}));
    EXPECT_EQ(selected[0].lineNumberOffset, 1);

    // What is mended is no longer marked; what stands elsewhere is.
    editor.insertAt(u" "_qs, 0, 0);
    EXPECT_EQ(marked(QsciScintillaBase::INDIC_CONTAINER), u" select 'ä😀';\nselect [boom]"_qs);
    editor.insertAt(u"x"_qs, 1, 11);
    EXPECT_EQ(marked(QsciScintillaBase::INDIC_CONTAINER), u" select 'ä😀';\nselect boomx"_qs);
}

TEST_F(DXSQLEditorTest, togglesComments)
{
    editor.setText(u"a\n-- b\nc"_qs);
    editor.setSelection(0, 0, 2, 0);
    editor.toggleComment();
    EXPECT_EQ(editor.text(), u"-- a\n-- -- b\nc"_qs);
    editor.toggleComment();
    EXPECT_EQ(editor.text(), u"a\n-- b\nc"_qs);
    editor.undo();
    EXPECT_EQ(editor.text(), u"-- a\n-- -- b\nc"_qs);
}

TEST_F(DXSQLEditorTest, followsThePalette)
{
    const DXTheme &dark = DXTheme::of(DXTheme::Appearance::Dark);
    editor.setPalette(dark.palette());
    EXPECT_EQ(editor.SendScintilla(QsciScintillaBase::SCI_STYLEGETBACK, 0UL),
              (dark.surface.blue() << 16 | dark.surface.green() << 8 | dark.surface.red()));
}

} // namespace
