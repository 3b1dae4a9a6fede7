// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "query/SQLToken.h"

#include <QStringView>

/// Follows a statement, token by token, to the semicolon at which the server would end it: not one
/// in parentheses, and not one in the BEGIN ATOMIC … END body of a function. A value, so what an
/// editor's line leaves open can be kept and gone on with. [any]
class DXSHARED_EXPORT SQLStatementReader final
{
public:
    /// Takes the next token that is neither blank nor comment, which stands in the text as `text`.
    /// True when it ends the statement; a new reader takes what follows.
    bool takeEnds(SQLToken::Kind kind, QStringView text);

    /// How many parentheses are open.
    qint32 parentheses() const { return m_parentheses; }
    /// Whether a body that began with BEGIN ATOMIC is open.
    bool isInBody() const { return m_stage == Stage::Body; }

    friend bool operator==(const SQLStatementReader &, const SQLStatementReader &) = default;

private:
    // How much of CREATE [OR REPLACE] FUNCTION … BEGIN ATOMIC … END has been read.
    enum class Stage : quint8 { Start, Create, Or, Replace, Routine, Begin, Body, OtherStatement };

    void takeWord(QStringView word);
    Stage stageAfter(QStringView word);
    Stage stageInBodyAfter(QStringView word);

    // What is open: parentheses, and CASE expressions in the body.
    qint32 m_parentheses = 0;
    qint32 m_cases = 0;
    Stage m_stage = Stage::Start;
    // A column may be called "end" behind a point or AS.
    bool m_nameFollows = false;
};
