// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// A program run to its end by a test, such as initdb or openssl. [any]
class Program final
{
public:
    struct Init
    {
        QString program;
        QStringList arguments = {};
        QByteArray input = {};
        /// Where it runs; the default can be entered by every user.
        QString folder = QStringLiteral("/");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    };
    /// Runs it and waits up to two minutes.
    explicit Program(const Init &init);

    /// Whether it started and ended with status 0.
    bool succeeded() const { return m_succeeded; }
    QByteArray output() const { return m_output; }
    /// Its command line and what it said, for the message of a failed test.
    QString failure() const { return m_failure; }

private:
    bool m_succeeded = false;
    QByteArray m_output;
    QString m_failure;
};
