// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/SQLLineStates.h"
#include "ui/editor/DXScintilla.h"

#include <QSet>
#include <QStringList>
#include <QTimer>

struct DXTheme;

/// Colours the SQL of a view and gives its lines their fold levels. Colours are made for what is
/// shown, whatever stands above it; lines that nobody has seen yet are read, not coloured, in small
/// slices whenever the program idles, so that folds know their ends. [main]
class DXSQLStyler final
{
public:
    enum Style {
        DefaultStyle,
        KeywordStyle,
        StringStyle,
        CommentStyle,
        NumberStyle,
        QuotedNameStyle,
        OperatorStyle,
    };
    struct Init
    {
        QsciScintillaBase &view;
        SQLMetadataTokenizerOptions options;
        /// Words to colour, in any case.
        QStringList keywords;
    };
    explicit DXSQLStyler(const Init &init);

    void applyTheme(const DXTheme &theme);
    /// What the view asks for before it shows the text up to there.
    void styleUpTo(int bytePosition);
    /// A text that began in line was inserted or removed, with so many line breaks.
    void changed(int line, int linesAdded);
    /// Reads everything that is not known yet; takes a fifth of a second for 10 MB.
    void readAll();

    /// What each line leaves open.
    SQLLineStates &lines() { return m_lines; }
    /// The line's text with its break.
    QString lineText(qsizetype line) const;

private:
    Q_DISABLE_COPY_MOVE(DXSQLStyler)

    void lineRead(qsizetype line, const SQLLineStates::Line &state);
    void styleLine(int line);
    int styleOf(const SQLToken &token, QStringView text) const;
    void readInIdleTime();

    QsciScintillaBase &m_view;
    const SQLMetadataTokenizerOptions m_options;
    QSet<QString> m_keywords;
    SQLLineStates m_lines;
    // Which lines have their colours; those behind the end have not.
    QList<bool> m_isStyled;
    int m_firstUnstyled = 0;
    QTimer m_idle;
};
