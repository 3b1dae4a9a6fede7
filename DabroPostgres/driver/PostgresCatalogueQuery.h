// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The text of a read of the catalogues, and whether the names that were placed into it can have
/// changed what it does. A value. [any]
class PostgresCatalogueQuery final
{
public:
    PostgresCatalogueQuery() = default;
    /// A text that may hold anything. Implicit: whoever knows no better is safe.
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions)
    PostgresCatalogueQuery(const QString &text)
        : m_text(text)
    { }
    /// A text of ours, in whose string constants, and nowhere else, stand names that isPlainName()
    /// accepts.
    static PostgresCatalogueQuery plain(const QString &text)
    {
        PostgresCatalogueQuery query(text);
        query.m_isPlain = true;
        return query;
    }

    const QString &text() const { return m_text; }
    bool isPlain() const { return m_isPlain; }

    /// Whether a string constant that name is placed into as it is ends where it would without it.
    static bool isPlainName(QStringView name)
    {
        return !name.contains(u'\'') && !name.contains(u'\\') && !name.contains(QChar::Null);
    }

private:
    QString m_text;
    bool m_isPlain = false;
};
