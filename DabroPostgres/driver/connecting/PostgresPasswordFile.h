// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class PostgresDatabaseConnectionDetails;

/// Passwords by server, database and user (libpq, "The Password File"), for connections whose
/// server libpq does not see under its own name: behind a tunnel everything is a port of 127.0.0.1.
/// [any]
class PostgresPasswordFile final
{
public:
    explicit PostgresPasswordFile(const QString &path)
        : m_path(path)
    { }

    struct Login
    {
        QString host;
        quint16 port = 0;
        QString database;
        QString user;
    };
    /// The password of the first line that matches; null when none does, and when there is no such
    /// file. A file that others may read or write is left alone, with a line in the log.
    QString passwordFor(const Login &login) const;
    /// Whether it is a file that others may read or write.
    bool isOpenToOthers() const;

    struct Found
    {
        /// Null for none.
        QString password = {};
        QString path = {};
    };
    /// The password for database on the server of details by the file that libpq would read for
    /// them. Nothing when they hold a password, or libpq has one from the environment.
    static Found find(const PostgresDatabaseConnectionDetails &details, const QString &database);

private:
    const QString m_path;
};
