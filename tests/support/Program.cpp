// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Program.h"

#include <QDeadlineTimer>
#include <QFile>

#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>
#include <vector>

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr std::chrono::minutes limit(2);

// A file in memory that the program reads or writes, so that nobody waits for a full pipe.
class Stream final
{
public:
    explicit Stream(const QByteArray &content = {})
        : m_descriptor(memfd_create("stream", MFD_CLOEXEC))
    {
        if (m_file.open(m_descriptor, QFile::ReadWrite | QFile::Unbuffered))
            m_file.write(content);
        m_file.seek(0);
    }
    ~Stream() { close(m_descriptor); }
    int descriptor() const { return m_descriptor; }
    QByteArray content()
    {
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    Q_DISABLE_COPY_MOVE(Stream)

    const int m_descriptor;
    QFile m_file;
};

std::vector<char *> pointersTo(const QByteArrayList &texts)
{
    std::vector<char *> pointers;
    for (const QByteArray &text : texts)
        pointers.push_back(const_cast<char *>(text.constData()));
    pointers.push_back(nullptr);
    return pointers;
}

QByteArrayList toBytes(const QStringList &texts)
{
    QByteArrayList bytes;
    for (const QString &text : texts)
        bytes += text.toLocal8Bit();
    return bytes;
}

// The status of waitpid(2); -1 when the program had to be killed.
int waitFor(pid_t child)
{
    const QDeadlineTimer deadline(limit);
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (deadline.hasExpired()) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return status;
}

} // namespace

// By posix_spawn(3): a QProcess shares our memory with its child for a moment, which leaves
// ThreadSanitizer blind for the locks of our thread.
Program::Program(const Init &init)
{
    Stream input(init.input);
    Stream output;
    Stream errors;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, init.folder.toLocal8Bit().constData());
    posix_spawn_file_actions_adddup2(&actions, input.descriptor(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.descriptor(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors.descriptor(), STDERR_FILENO);

    const QByteArrayList arguments = toBytes(QStringList(init.program) + init.arguments);
    const QByteArrayList environment = toBytes(init.environment.toStringList());
    pid_t child = 0;
    const int reason = posix_spawnp(&child, arguments.first().constData(), &actions, nullptr,
                                    pointersTo(arguments).data(), pointersTo(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    const int status = reason == 0 ? waitFor(child) : -1;

    m_succeeded = status == 0;
    m_output = output.content();
    m_failure = init.program + u' ' + init.arguments.join(u' ') + u'\n'
                + QString::fromUtf8(m_output + errors.content());
    if (reason != 0)
        m_failure += QString::fromLocal8Bit(std::strerror(reason));
    else if (status < 0)
        m_failure += QStringLiteral("It did not end in time.");
    else if (WIFSIGNALED(status))
        m_failure += QStringLiteral("It was ended by signal %1.").arg(WTERMSIG(status));
}
