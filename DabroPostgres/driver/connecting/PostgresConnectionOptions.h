// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QMap>
#include <QString>

#include <optional>

/// What libpq makes of a connection string: the parameters that it gives, and everything that
/// libpq adds from the service file, the environment and its own defaults. [any]
class PostgresConnectionOptions final
{
public:
    /// Reads a URI or key/value string (libpq, "Connection Strings"), without connecting. Nothing,
    /// with error set, for what libpq would refuse. *Result decides.*
    static std::optional<PostgresConnectionOptions> parse(const QString &text, DXError *error);

    /// The parameters in the string itself, by keyword.
    const QMap<QString, QString> &explicitValues() const { return m_explicit; }
    /// The value that libpq would connect with; null when it has none.
    QString value(const QString &keyword) const { return m_effective.value(keyword); }
    /// Whether the string decides the value, itself or by the service that it names; what comes
    /// from the environment alone is not given.
    bool isGiven(const QString &keyword) const;
    /// Whether the value is another one than libpq's built-in default.
    bool isConfigured(const QString &keyword) const;
    /// Whether libpq would use the very same value if the string were empty.
    bool isSameWithoutString(const QString &keyword) const;
    /// The environment variable that sets the parameter; null when none does.
    QString environmentVariable(const QString &keyword) const { return m_variables.value(keyword); }
    /// Every parameter that has a value.
    QStringList keywords() const { return m_effective.keys(); }

private:
    PostgresConnectionOptions() = default;
    bool expand(const QMap<QString, QString> &given, QMap<QString, QString> &expanded,
                DXError *error);

    QMap<QString, QString> m_explicit;
    QMap<QString, QString> m_effective;
    QMap<QString, QString> m_withoutString;
    QMap<QString, QString> m_builtIn;
    QMap<QString, QString> m_variables;
};
