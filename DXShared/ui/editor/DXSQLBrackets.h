// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/SQLMetadataTokenizerOptions.h"

#include <QtCore/qglobal.h>

#include <optional>

class DXSQLStyler;
class QsciScintillaBase;

/// Finds the other one of a pair of brackets, with no regard to those in strings and comments.
/// [main]
class DXSQLBrackets final
{
public:
    struct Place
    {
        int line = 0;
        /// In UTF-16 code units from the line's start.
        qsizetype column = 0;
    };
    struct Pair
    {
        Place bracket;
        /// Nothing when the text holds none.
        std::optional<Place> other;
    };

    DXSQLBrackets(const SQLMetadataTokenizerOptions &options, DXSQLStyler &styler);

    /// The pair of which one stands before the caret, or else behind it; nothing where there is no
    /// bracket, and where its other is thousands of lines away.
    std::optional<Pair> at(Place caret, int lineCount) const;
    /// Lights up the pair at the view's caret, or the bracket that has no other.
    void show(QsciScintillaBase &view) const;

private:
    struct Bracket;
    QList<Bracket> bracketsOf(int line) const;

    const SQLMetadataTokenizerOptions m_options;
    DXSQLStyler &m_styler;
};
