// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLTyping.h"

#include "ui/editor/DXSQLBrackets.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/editor/DXSQLStyler.h"

#include <QByteArrayView>
#include <QKeyEvent>

#include <cctype>

namespace
{

using Base = QsciScintillaBase;

constexpr int indentation = 4;
constexpr int linesOfAStatement = 2000;

char closingOf(char opening)
{
    return opening == '(' ? ')' : opening == '[' ? ']' : opening;
}

bool isQuote(char c)
{
    return c == '\'' || c == '"';
}

bool isPartOfWord(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$' || c < 0;
}

} // namespace

DXSQLTyping::DXSQLTyping(const Init &init)
    : m_editor(init.editor)
    , m_options(init.options)
    , m_styler(init.styler)
    , m_brackets(init.brackets)
{ }

char DXSQLTyping::byteAt(long byte) const
{
    return static_cast<char>(m_editor.SendScintilla(Base::SCI_GETCHARAT, byte));
}

bool DXSQLTyping::isAutoClosed(long byte) const
{
    return m_editor.SendScintilla(Base::SCI_INDICATORVALUEAT,
                                  static_cast<unsigned long>(DXSQLEditor::AutoClosedIndicator),
                                  byte)
           != 0;
}

bool DXSQLTyping::takesKey(const QKeyEvent &event)
{
    const long caret = m_editor.SendScintilla(Base::SCI_GETCURRENTPOS);
    if (m_editor.SendScintilla(Base::SCI_GETSELECTIONS) != 1 || m_editor.hasSelection()
        || !isAutoClosed(caret))
        return false;
    const char closing = byteAt(caret);
    if (event.key() == Qt::Key_Backspace && event.modifiers() == Qt::NoModifier) {
        if (caret == 0 || closingOf(byteAt(caret - 1)) != closing)
            return false;
        m_editor.SendScintilla(Base::SCI_DELETERANGE, static_cast<unsigned long>(caret - 1), 2L);
        return true;
    }
    if (event.text() != QChar::fromLatin1(closing))
        return false;
    // A second quote right behind the first one of a text may begin a doubled one, but far more
    // often ends an empty string.
    m_editor.SendScintilla(Base::SCI_SETINDICATORCURRENT, long(DXSQLEditor::AutoClosedIndicator));
    m_editor.SendScintilla(Base::SCI_INDICATORCLEARRANGE, static_cast<unsigned long>(caret), 1L);
    m_editor.SendScintilla(Base::SCI_GOTOPOS, caret + 1);
    return true;
}

void DXSQLTyping::added(int character)
{
    if (m_editor.SendScintilla(Base::SCI_GETSELECTIONS) != 1)
        return;
    if (character == '\n')
        indentNewLine();
    else if (character == ')')
        unindentBracket();
    else if (character == '(' || character == '[' || character == '\'' || character == '"')
        close(static_cast<char>(character));
}

// Whether a character typed at byte would be part of a string, a quoted name or a comment.
bool DXSQLTyping::isInStringOrComment(long byte) const
{
    const long line = m_editor.SendScintilla(Base::SCI_LINEFROMPOSITION, byte);
    const long start = m_editor.SendScintilla(Base::SCI_POSITIONFROMLINE, line);
    const QString before = QString::fromUtf8(m_styler.lineText(line).toUtf8().first(byte - start));
    SQLTokenizer tokenizer(m_options, before, m_styler.lines().before(line).lexical);
    bool isComment = false;
    while (const auto token = tokenizer.next())
        isComment = token->kind == SQLToken::Kind::LineComment;
    return isComment || tokenizer.state().open;
}

void DXSQLTyping::close(char opening)
{
    const long caret = m_editor.SendScintilla(Base::SCI_GETCURRENTPOS);
    const bool isAtEnd = caret >= m_editor.SendScintilla(Base::SCI_GETLENGTH);
    if (!isAtEnd && !QByteArrayView(" \t\r\n),;]").contains(byteAt(caret)))
        return;
    if (isQuote(opening) && caret > 1
        && (isPartOfWord(byteAt(caret - 2)) || byteAt(caret - 2) == opening))
        return;
    if (isInStringOrComment(caret - 1))
        return;
    const char closing[] = {closingOf(opening), '\0'};
    m_editor.SendScintilla(Base::SCI_INSERTTEXT, static_cast<unsigned long>(caret), closing);
    m_editor.SendScintilla(Base::SCI_SETINDICATORCURRENT, long(DXSQLEditor::AutoClosedIndicator));
    m_editor.SendScintilla(Base::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(caret), 1L);
}

// How far what follows a line is indented: as the line, deeper behind a bracket that it leaves open
// at its end, and as the statement's first line once that has ended.
int DXSQLTyping::indentationAfter(int line) const
{
    SQLLineStates &states = m_styler.lines();
    if (!states.before(line + 1).isInStatement && states.before(line).isInStatement)
        return m_editor.indentation(
            static_cast<int>(states.statementStart(line, linesOfAStatement)));
    const bool opens =
        m_styler.lineText(line).trimmed().endsWith(u'(')
        && states.before(line + 1).reader.parentheses() > states.before(line).reader.parentheses();
    return m_editor.indentation(line) + (opens ? indentation : 0);
}

void DXSQLTyping::indentNewLine()
{
    const long caret = m_editor.SendScintilla(Base::SCI_GETCURRENTPOS);
    const int line = static_cast<int>(m_editor.SendScintilla(Base::SCI_LINEFROMPOSITION, caret));
    if (line == 0)
        return;
    const int wanted = indentationAfter(line - 1);
    const bool splitsPair =
        isAutoClosed(caret) && byteAt(caret) == ')' && wanted > m_editor.indentation(line - 1);
    if (splitsPair) {
        m_editor.SendScintilla(Base::SCI_INSERTTEXT, static_cast<unsigned long>(caret), "\n");
        m_editor.setIndentation(line + 1, m_editor.indentation(line - 1));
    }
    if (wanted > m_editor.indentation(line))
        m_editor.setIndentation(line, wanted);
    m_editor.SendScintilla(Base::SCI_GOTOPOS,
                           m_editor.SendScintilla(Base::SCI_GETLINEINDENTPOSITION, long(line)));
    m_editor.SendScintilla(Base::SCI_CHOOSECARETX);
}

// A bracket that begins its line stands below the line that opened it.
void DXSQLTyping::unindentBracket()
{
    const long caret = m_editor.SendScintilla(Base::SCI_GETCURRENTPOS);
    const int line = static_cast<int>(m_editor.SendScintilla(Base::SCI_LINEFROMPOSITION, caret));
    if (m_editor.SendScintilla(Base::SCI_GETLINEINDENTPOSITION, long(line)) != caret - 1)
        return;
    const long start = m_editor.SendScintilla(Base::SCI_POSITIONFROMLINE, long(line));
    const auto pair =
        m_brackets.at({line, static_cast<qsizetype>(caret - start)}, m_editor.lines());
    if (pair && pair->other && pair->other->line < line)
        m_editor.setIndentation(line, m_editor.indentation(pair->other->line));
}
