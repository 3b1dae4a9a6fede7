// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXTextRange.h"

#include <QList>
#include <QRegularExpression>
#include <QString>

#include <atomic>

/// Finds and replaces in a text. Text is found as it is written or by a regular expression, whose
/// ^ and $ are those of lines. [any]
class DXSHARED_EXPORT DXTextSearch final
{
public:
    struct Query
    {
        QString wanted;
        bool matchesCase = false;
        bool wholeWords = false;
        bool isRegularExpression = false;

        friend bool operator==(const Query &, const Query &) = default;
    };
    /// More are not looked for.
    static constexpr qsizetype maximum = 1'000'000;

    explicit DXTextSearch(const Query &query);

    /// What is wrong with the expression, for the user; null when nothing is.
    QString error() const { return m_error; }
    /// Everything in the text's range, in order; empty matches are no matches. Ends early, with
    /// what was found, once isCancelled is true.
    QList<DXTextRange> find(const QString &text, const DXTextRange &range,
                            const std::atomic<bool> &isCancelled) const;
    /// What takes the place of the text that matched there: replacement, in which for a regular
    /// expression \1 or $1 is what its first group matched, \0 or $0 everything, and \n and \t are
    /// a line break and a tab.
    QString replacementFor(const QString &text, const DXTextRange &match,
                           const QString &replacement) const;

private:
    bool m_isExpression = false;
    QString m_error;
    QRegularExpression m_expression;
};
