// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <sys/types.h>

/// A child process that tells on its standard output when it is ready, and that never outlives us.
///
/// A thread of its own starts the child, watches and reaps it, and lives exactly as long as the
/// child: the kernel kills a child whose parent asked for it (PR_SET_PDEATHSIG, prctl(2)) when the
/// starting *thread* ends, so a thread that may end earlier would take the child along. The child
/// leads a session of its own: a Ctrl-C in our terminal is not meant for it. Every operation is
/// [any].
class DXSSHProcess final
{
public:
    struct Command
    {
        /// Absolute path of the program; its first argument is the program's name.
        QByteArray program;
        QList<QByteArray> arguments;
        /// Entries of the form NAME=value.
        QList<QByteArray> environment;
        /// What on standard output tells that the child is ready.
        QByteArray readyMark;
    };
    enum class State {
        Opening,
        Open,
        Ended,
    };
    /// How the child ended: not started (an errno), or by itself, or by a signal.
    struct Ending
    {
        int systemError = 0;
        int exitCode = 0;
        int signal = 0;
    };

    /// Starts the child.
    explicit DXSSHProcess(Command command);
    /// Ends the child and waits for it.
    ~DXSSHProcess();

    State state() const;
    /// Returns after limit, or sooner when the child is ready, printed something or ended.
    State waitWhileOpening(std::chrono::milliseconds limit);
    /// True once it has ended; false when it did not within limit.
    bool waitForEnd(std::chrono::milliseconds limit);
    /// How it ended, once it has.
    Ending ending() const;

    /// The last 8 KiB of what the child printed on standard error since it became ready, or, while
    /// it is not, since it started. Whatever it printed before the call is in it.
    QByteArray standardError() const;
    /// The complete lines of it that no call returned yet; only what was printed before it became
    /// ready.
    QList<QByteArray> takeOpeningLines();

    /// Asks the child to end, insists after a second, and returns when it is gone and reaped.
    void end();

private:
    Q_DISABLE_COPY_MOVE(DXSSHProcess)

    // A file descriptor that is closed with its owner.
    class Descriptor final
    {
    public:
        explicit Descriptor(int number = -1)
            : m_number(number)
        { }
        ~Descriptor() { close(); }
        int number() const { return m_number; }
        void reset(int number);
        void close();

    private:
        Q_DISABLE_COPY_MOVE(Descriptor)
        int m_number;
    };

    bool openPipes();
    void run();
    pid_t start() const;
    void watch(pid_t child, int exited);
    // False at the end of the stream.
    bool readOutput();
    bool readStandardError() const;
    void becomeOpen();
    void finish(const Ending &ending);

    const Command m_command;
    QByteArray m_outputSoFar;
    Descriptor m_output;
    Descriptor m_wake;
    // The child's ends of the pipes, until it has them.
    Descriptor m_childOutput;
    Descriptor m_childError;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state = State::Opening;
    Ending m_ending;
    // Read by whoever asks for the text, so that nobody misses what was printed before.
    Descriptor m_standardError;
    mutable QByteArray m_text;
    mutable QByteArray m_openingText;

    std::jthread m_thread;
};
