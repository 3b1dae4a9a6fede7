// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/SQLMetadataTokenizerOptions.h"

#include <QtCore/qglobal.h>

class DXSQLBrackets;
class DXSQLEditor;
class DXSQLStyler;
class QKeyEvent;

/// What typing brings along: the indentation of a new line, and the bracket or quote that closes
/// the one typed. A closing one comes only where nothing but a blank or the end of something
/// follows, never in a string or comment, and typing it goes over the one that came by itself; so
/// whoever types both gets what was typed. [main]
class DXSQLTyping final
{
public:
    struct Init
    {
        DXSQLEditor &editor;
        SQLMetadataTokenizerOptions options;
        DXSQLStyler &styler;
        const DXSQLBrackets &brackets;
    };
    explicit DXSQLTyping(const Init &init);

    /// Before the editor sees a key: true when it was dealt with.
    bool takesKey(const QKeyEvent &event);
    /// After a character was typed.
    void added(int character);

private:
    void close(char opening);
    void indentNewLine();
    void unindentBracket();
    int indentationAfter(int line) const;
    bool isInStringOrComment(long byte) const;
    bool isAutoClosed(long byte) const;
    char byteAt(long byte) const;

    DXSQLEditor &m_editor;
    const SQLMetadataTokenizerOptions m_options;
    DXSQLStyler &m_styler;
    const DXSQLBrackets &m_brackets;
};
