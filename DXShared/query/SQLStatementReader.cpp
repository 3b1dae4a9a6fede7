// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/SQLStatementReader.h"

#include <algorithm>
#include <utility>

namespace
{

// Whether word is keyWord, which is given in small letters.
bool isKeyWord(QStringView word, QLatin1String keyWord)
{
    const auto matches = [](QChar c, char letter) { return (c.unicode() | 0x20) == letter; };
    return word.size() == keyWord.size()
           && std::equal(word.begin(), word.end(), keyWord.begin(), matches);
}

bool isRoutine(QStringView word)
{
    return isKeyWord(word, QLatin1String("function"))
           || isKeyWord(word, QLatin1String("procedure"));
}

} // namespace

bool SQLStatementReader::takeEnds(SQLToken::Kind kind, QStringView text)
{
    if (kind == SQLToken::Kind::Word) {
        takeWord(text);
        return false;
    }
    const QChar c = kind == SQLToken::Kind::Punctuation ? text.front() : QChar();
    if (c == u';' && m_parentheses == 0 && m_stage != Stage::Body)
        return true;
    if (c == u'(')
        ++m_parentheses;
    else if (c == u')' && m_parentheses > 0)
        --m_parentheses;
    m_nameFollows = c == u'.';
    if (m_stage < Stage::Routine)
        m_stage = Stage::OtherStatement;
    else if (m_stage == Stage::Begin)
        m_stage = Stage::Routine;
    return false;
}

void SQLStatementReader::takeWord(QStringView word)
{
    const bool isName = std::exchange(m_nameFollows, false);
    if (m_stage != Stage::OtherStatement && m_parentheses == 0 && !isName)
        m_stage = stageAfter(word);
}

SQLStatementReader::Stage SQLStatementReader::stageAfter(QStringView word)
{
    switch (m_stage) {
    case Stage::Start:
        return isKeyWord(word, QLatin1String("create")) ? Stage::Create : Stage::OtherStatement;
    case Stage::Create:
        if (isKeyWord(word, QLatin1String("or")))
            return Stage::Or;
        return isRoutine(word) ? Stage::Routine : Stage::OtherStatement;
    case Stage::Or:
        return isKeyWord(word, QLatin1String("replace")) ? Stage::Replace : Stage::OtherStatement;
    case Stage::Replace:
        return isRoutine(word) ? Stage::Routine : Stage::OtherStatement;
    case Stage::Begin:
        if (isKeyWord(word, QLatin1String("atomic")))
            return Stage::Body;
        [[fallthrough]];
    case Stage::Routine:
        return isKeyWord(word, QLatin1String("begin")) ? Stage::Begin : Stage::Routine;
    case Stage::Body:
        return stageInBodyAfter(word);
    case Stage::OtherStatement:
        break;
    }
    return Stage::OtherStatement;
}

SQLStatementReader::Stage SQLStatementReader::stageInBodyAfter(QStringView word)
{
    if (isKeyWord(word, QLatin1String("case")))
        ++m_cases;
    else if (isKeyWord(word, QLatin1String("end")) && --m_cases < 0)
        return Stage::Routine;
    else
        m_nameFollows = isKeyWord(word, QLatin1String("as"));
    return Stage::Body;
}
