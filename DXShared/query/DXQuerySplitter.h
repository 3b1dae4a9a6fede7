// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryDetails.h"
#include "core/DXGlobal.h"
#include "query/SQLMetadataTokenizerOptions.h"

#include <QList>

#include <optional>

/// Cuts an editor's text into its statements, where the server would: at semicolons outside of
/// parentheses (CREATE RULE … DO (a; b)) and of the BEGIN ATOMIC … END body of a CREATE FUNCTION or
/// PROCEDURE. Text that does not parse is cut by the same rules. Each call stands alone. [any]
class DXSHARED_EXPORT DXQuerySplitter final
{
public:
    /// initWithSQLPreParseOptions:
    explicit DXQuerySplitter(const SQLMetadataTokenizerOptions &options);

    /// The statements of text in order; joined, the pieces are the text. Each holds exactly one
    /// statement that is not empty, so a server that is sent the pieces together gives one result
    /// for each. A piece begins with its statement, or with the comments above it, and reaches to
    /// the next piece: behind its semicolon stand blanks, needless semicolons and a comment on the
    /// same line. Text without any statement is one piece, empty text none.
    QList<DXQueryDetails> split(const QString &text) const;
    /// The piece in which a caret before the character at `position` stands; a caret between two
    /// pieces belongs to the second, one at the end of the text to the last. None for empty text.
    std::optional<DXQueryDetails> statementAt(const QString &text, qsizetype position) const;

private:
    const SQLMetadataTokenizerOptions m_options;
};
