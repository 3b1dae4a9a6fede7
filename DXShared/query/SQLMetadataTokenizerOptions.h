// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The lexical rules in which SQL dialects differ. What a new object says is the standard's: a hash
/// mark is an operator character, comments nest, and there are no @variables. [any]
class SQLMetadataTokenizerOptions final
{
public:
    /// Whether # begins a comment that ends with the line.
    bool hashMarksAreComments() const { return m_hashMarksAreComments; }
    void setHashMarksAreComments(bool yes) { m_hashMarksAreComments = yes; }

    /// Whether a /* inside a comment opens another one that has to be closed, too.
    bool allowNestedMultilineComments() const { return m_allowNestedMultilineComments; }
    void setAllowNestedMultilineComments(bool yes) { m_allowNestedMultilineComments = yes; }

    /// Whether @name and @@name are variables rather than operators before a word.
    bool includeMSSQLVariables() const { return m_includeMSSQLVariables; }
    void setIncludeMSSQLVariables(bool yes) { m_includeMSSQLVariables = yes; }

    friend bool operator==(const SQLMetadataTokenizerOptions &,
                           const SQLMetadataTokenizerOptions &) = default;

private:
    bool m_hashMarksAreComments = false;
    bool m_allowNestedMultilineComments = true;
    bool m_includeMSSQLVariables = false;
};
