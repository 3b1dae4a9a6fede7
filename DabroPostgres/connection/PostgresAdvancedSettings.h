// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QString>

#include <optional>

/// A connection's parameters as the advanced sheet edits them: rows of names and values that are
/// written plainly, and the time zone. Those of the session, the record keeps ready for SET
/// statements. [any]
class PostgresAdvancedSettings final
{
    Q_DECLARE_TR_FUNCTIONS(PostgresAdvancedSettings)

public:
    struct Row
    {
        QString name;
        QString value;

        friend bool operator==(const Row &, const Row &) = default;
    };

    static QList<Row> rowsOf(const QMap<QString, QString> &connectionParameters);

    explicit PostgresAdvancedSettings(const QMap<QString, QString> &parameters);

    /// Empty for the server's own.
    QString timeZone() const { return m_timeZone; }
    QList<Row> rows() const { return m_rows; }

    struct Problem
    {
        /// -1 for the time zone.
        qsizetype row = -1;
        QString text;
    };
    /// The parameters for the record; nothing, with problem set, when one cannot be. Rows without a
    /// name and value are left out, and those that nobody changed stay to the letter as they were.
    std::optional<QMap<QString, QString>>
    parameters(const QString &timeZone, const QList<Row> &rows, Problem &problem) const;
    /// The same for the connection's own parameters, which rowsOf() shows.
    static std::optional<QMap<QString, QString>> connectionParameters(const QList<Row> &rows,
                                                                      Problem &problem);

private:
    static QString problemOf(const Row &row, const QMap<QString, QString> &parametersBefore);

    QMap<QString, QString> m_original;
    QString m_timeZone;
    QList<Row> m_rows;
};
