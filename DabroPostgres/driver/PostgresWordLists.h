// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The words of SQL that highlighting, completion and quoting know. Read once from the driver's
/// resources; each list is in the user's order (DXCollation) without duplicates, and empty when
/// its resource is missing. [any]
class PostgresWordLists final
{
public:
    static const PostgresWordLists &sharedInstance();

    /// Words that PostgreSQL quotes when they name a column, and verbs that begin statements
    /// (PostgreSQL, "SQL Key Words"); lower case.
    const QStringList &keywords() const { return m_keywords; }
    /// The built-in functions that people call (pg_proc).
    const QStringList &functions() const { return m_functions; }
    const QStringList &functionsAndKeywords() const { return m_functionsAndKeywords; }

private:
    PostgresWordLists();
    Q_DISABLE_COPY_MOVE(PostgresWordLists)

    const QStringList m_keywords;
    const QStringList m_functions;
    const QStringList m_functionsAndKeywords;
};
