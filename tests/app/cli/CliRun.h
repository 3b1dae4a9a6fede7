// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

class PostgresCluster;

/// The program dabro-cli, run by a test, with nothing of libpq's in its environment but what the
/// test says. What still runs is killed with this object. [main]
class CliRun final
{
public:
    /// What stands at its standard input and outputs.
    enum class At { Pipes, Terminal };

    struct Init
    {
        QStringList arguments;
        /// Variables beside those of the test's own environment.
        QProcessEnvironment environment = {};
        QByteArray input = {};
        At at = At::Pipes;
        QString program = defaultProgram();
    };
    explicit CliRun(const Init &init);
    ~CliRun();

    static QString defaultProgram();
    /// The variables that lead to a cluster as its superuser.
    static QProcessEnvironment environmentFor(const PostgresCluster &cluster);

    qint64 processId() const { return m_process.processId(); }
    void signal(int number) const;
    /// Types on the terminal.
    void type(const QByteArray &text) const;
    /// Waits until the terminal shows text behind what was awaited before.
    bool awaitOnTerminal(const QByteArray &text);
    /// Waits for the end; the exit status, or -1 when it did not end or crashed.
    int wait();

    /// What it wrote; on a terminal everything is output. Once it has ended.
    QByteArray output() const { return m_output; }
    QByteArray errors() const { return m_errors; }

private:
    Q_DISABLE_COPY_MOVE(CliRun)

    void openTerminal();
    bool readTerminal();

    QProcess m_process;
    int m_terminal = -1;
    int m_programsEnd = -1;
    qsizetype m_awaited = 0;
    QByteArray m_output;
    QByteArray m_errors;
};
