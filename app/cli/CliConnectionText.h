// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// A connection put together from options, in the key/value notation of the server's client library
/// (libpq, "Keyword/Value Connection Strings"). [any]
class CliConnectionText final
{
public:
    /// Adds an entry; nothing when value is null.
    void append(const QString &key, const QString &value);
    bool isEmpty() const { return m_entries.isEmpty(); }
    QString toString() const { return m_entries.join(u' '); }

private:
    QStringList m_entries;
};
