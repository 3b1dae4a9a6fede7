// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cli/CliRun.h"

#include "support/DXWait.h"
#include "support/PostgresCluster.h"
#include "support/ServerPrograms.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

CliRun::CliRun(const Init &init)
{
    QProcessEnvironment environment = ServerPrograms::environment();
    environment.insert(QStringLiteral("TERM"), QStringLiteral("xterm"));
    environment.insert(init.environment);
    m_process.setProcessEnvironment(environment);
    m_process.setProgram(init.program);
    m_process.setArguments(init.arguments);
    if (init.at == At::Terminal)
        openTerminal();
    m_process.start();
    EXPECT_TRUE(m_process.waitForStarted()) << m_process.errorString().toStdString();
    if (m_programsEnd >= 0)
        ::close(m_programsEnd);
    m_process.write(init.input);
    m_process.closeWriteChannel();
}

CliRun::~CliRun()
{
    m_process.kill();
    m_process.waitForFinished();
    if (m_terminal >= 0)
        ::close(m_terminal);
}

QString CliRun::defaultProgram()
{
    return QStringLiteral(DX_TEST_CLI);
}

QProcessEnvironment CliRun::environmentFor(const PostgresCluster &cluster)
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PGHOST"), cluster.socketFolder());
    environment.insert(QStringLiteral("PGPORT"), QString::number(cluster.port()));
    environment.insert(QStringLiteral("PGUSER"), PostgresCluster::superuser());
    environment.insert(QStringLiteral("PGDATABASE"), QStringLiteral("postgres"));
    return environment;
}

void CliRun::openTerminal()
{
    ASSERT_EQ(::openpty(&m_terminal, &m_programsEnd, nullptr, nullptr, nullptr), 0);
    for (const int end : {m_terminal, m_programsEnd})
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(m_terminal, F_SETFL, O_NONBLOCK);
    m_process.setChildProcessModifier([end = m_programsEnd] {
        ::setsid();
        ::ioctl(end, TIOCSCTTY, 0);
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::dup2(end, standard);
    });
}

void CliRun::signal(int number) const
{
    ASSERT_EQ(::kill(static_cast<pid_t>(processId()), number), 0);
}

void CliRun::type(const QByteArray &text) const
{
    ASSERT_EQ(::write(m_terminal, text.constData(), static_cast<size_t>(text.size())), text.size());
}

// False once nobody is at the other end.
bool CliRun::readTerminal()
{
    std::array<char, 4096> bytes;
    ssize_t count = 0;
    while ((count = ::read(m_terminal, bytes.data(), bytes.size())) > 0)
        m_output.append(bytes.data(), count);
    return count < 0 && errno == EAGAIN;
}

bool CliRun::awaitOnTerminal(const QByteArray &text)
{
    return DXWait::until([&] {
        readTerminal();
        const qsizetype found = m_output.indexOf(text, m_awaited);
        if (found >= 0)
            m_awaited = found + text.size();
        return found >= 0;
    });
}

int CliRun::wait()
{
    // Who writes to a terminal waits for its reader.
    const bool hasEnded = DXWait::until([this] {
        if (m_terminal >= 0)
            readTerminal();
        return m_process.state() == QProcess::NotRunning;
    });
    m_output += m_process.readAllStandardOutput();
    m_errors += m_process.readAllStandardError();
    EXPECT_TRUE(hasEnded) << m_output.toStdString() << m_errors.toStdString();
    const bool hasCrashed = m_process.exitStatus() == QProcess::CrashExit;
    return hasEnded && !hasCrashed ? m_process.exitCode() : -1;
}
