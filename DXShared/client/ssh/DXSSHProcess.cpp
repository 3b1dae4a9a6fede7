// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/ssh/DXSSHProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using Clock = std::chrono::steady_clock;

namespace
{

constexpr qsizetype keptText = 8 * 1024;
constexpr std::chrono::seconds patience(1);

// What a child whose program cannot be run ends with; ssh itself ends with 255 (ssh(1)).
constexpr int cannotRun = 127;

// Pointers for execve(2), made before the fork: a child of a process with threads must not allocate
// memory.
std::vector<char *> pointersTo(const QList<QByteArray> &texts)
{
    std::vector<char *> pointers;
    for (const QByteArray &text : texts)
        pointers.push_back(const_cast<char *>(text.constData()));
    pointers.push_back(nullptr);
    return pointers;
}

// What a child needs to become another program.
struct Start
{
    const char *program;
    char *const *arguments;
    char *const *environment;
    int output;
    int error;
    pid_t parent;
};

void resetSignals()
{
    struct sigaction normal = {};
    normal.sa_handler = SIG_DFL;
    for (int number = 1; number <= SIGRTMAX; ++number)
        sigaction(number, &normal, nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Runs in the child: only calls of signal-safety(7).
[[noreturn]] void become(const Start &start)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have died before that was asked for.
    if (getppid() != start.parent)
        _exit(cannotRun);
    setsid();
    resetSignals();
    // Out of the way of the three that are about to be set.
    const int output = fcntl(start.output, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = fcntl(start.error, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (output < 0 || error < 0 || input < 0)
        _exit(cannotRun);
    if (input != STDIN_FILENO)
        dup2(input, STDIN_FILENO);
    else
        fcntl(input, F_SETFD, 0);
    dup2(output, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    // Descriptors of libraries that forgot to mark theirs.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    execve(start.program, start.arguments, start.environment);
    _exit(cannotRun);
}

// To the child and to what it started. Both, as it may not lead its group yet.
void signalGroup(pid_t child, int number)
{
    kill(-child, number);
    kill(child, number);
}

// As poll(2) wants it: -1 for ever.
int millisecondsUntil(Clock::time_point deadline)
{
    if (deadline == Clock::time_point::max())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

// Becomes readable when child ends. The C library's own wrapper cannot be linked from C++ before
// glibc 2.37.
int openProcess(pid_t child)
{
    return static_cast<int>(syscall(SYS_pidfd_open, child, 0));
}

int waitFor(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return 0;
    }
    return status;
}

// Appends what can be read without waiting to text, of which it keeps the last bytes. False at the
// end of the stream.
bool readAll(int descriptor, QByteArray &text, QByteArray *also)
{
    std::array<char, 4096> buffer;
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count < 0 && errno == EAGAIN;
        text.append(buffer.data(), count);
        if (text.size() > keptText)
            text.remove(0, text.size() - keptText);
        if (also)
            also->append(buffer.data(), count);
    }
}

} // namespace

void DXSSHProcess::Descriptor::reset(int number)
{
    close();
    m_number = number;
}

void DXSSHProcess::Descriptor::close()
{
    if (m_number >= 0)
        ::close(m_number);
    m_number = -1;
}

DXSSHProcess::DXSSHProcess(Command command)
    : m_command(std::move(command))
{
    if (openPipes())
        m_thread = std::jthread([this] { run(); });
    else
        finish({.systemError = errno, .exitCode = 0, .signal = 0});
}

DXSSHProcess::~DXSSHProcess()
{
    end();
}

bool DXSSHProcess::openPipes()
{
    // Only our ends must not block: the flag would be shared with all that write to the other.
    const auto openPipe = [](Descriptor &ours, Descriptor &childs) {
        std::array<int, 2> ends;
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            return false;
        ours.reset(ends[0]);
        childs.reset(ends[1]);
        return fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
    };
    m_wake.reset(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    return m_wake.number() >= 0 && openPipe(m_output, m_childOutput)
           && openPipe(m_standardError, m_childError);
}

DXSSHProcess::State DXSSHProcess::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

DXSSHProcess::State DXSSHProcess::waitWhileOpening(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(
        lock, limit, [this] { return m_state != State::Opening || m_openingText.contains('\n'); });
    return m_state;
}

DXSSHProcess::Ending DXSSHProcess::ending() const
{
    const std::lock_guard lock(m_mutex);
    return m_ending;
}

QByteArray DXSSHProcess::standardError() const
{
    const std::lock_guard lock(m_mutex);
    readStandardError();
    // A copy of its own: ThreadSanitizer does not see Qt count the users of a shared one.
    return {m_text.constData(), m_text.size()};
}

QList<QByteArray> DXSSHProcess::takeOpeningLines()
{
    const std::lock_guard lock(m_mutex);
    const qsizetype end = m_openingText.lastIndexOf('\n') + 1;
    QList<QByteArray> lines = m_openingText.first(end).split('\n');
    lines.removeLast();
    m_openingText.remove(0, end);
    return lines;
}

void DXSSHProcess::end()
{
    if (!m_thread.joinable())
        return;
    eventfd_write(m_wake.number(), 1);
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_state == State::Ended; });
}

bool DXSSHProcess::waitForEnd(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, limit, [this] { return m_state == State::Ended; });
}

void DXSSHProcess::run()
{
    // Signals are for the program's own threads; and the child must not run handlers of ours.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);

    const pid_t child = start();
    const int startError = errno;
    m_childOutput.close();
    m_childError.close();
    if (child < 0)
        return finish({.systemError = startError, .exitCode = 0, .signal = 0});

    const Descriptor exited(openProcess(child));
    const int watchError = exited.number() < 0 ? errno : 0;
    if (watchError == 0)
        watch(child, exited.number());
    // Programs that it started for asking or for reaching the host, and itself when it cannot be
    // watched. Until it is reaped, nobody else can have its number.
    signalGroup(child, watchError == 0 ? SIGTERM : SIGKILL);
    const int status = waitFor(child);
    finish({.systemError = watchError,
            .exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 0,
            .signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0});
}

pid_t DXSSHProcess::start() const
{
    const std::vector<char *> arguments = pointersTo(m_command.arguments);
    const std::vector<char *> environment = pointersTo(m_command.environment);
    const Start start{
        .program = m_command.program.constData(),
        .arguments = arguments.data(),
        .environment = environment.data(),
        .output = m_childOutput.number(),
        .error = m_childError.number(),
        .parent = getpid(),
    };
    const pid_t child = fork();
    if (child == 0)
        become(start);
    return child;
}

void DXSSHProcess::watch(pid_t child, int exited)
{
    enum Source { Exited, Wake, Error, Output };
    std::array<pollfd, 4> sources{};
    sources[Exited] = {exited, POLLIN, 0};
    sources[Wake] = {m_wake.number(), POLLIN, 0};
    sources[Error] = {m_standardError.number(), POLLIN, 0};
    sources[Output] = {m_output.number(), POLLIN, 0};

    Clock::time_point deadline = Clock::time_point::max();
    while (sources[Exited].revents == 0) {
        poll(sources.data(), sources.size(), millisecondsUntil(deadline));
        if (Clock::now() >= deadline) {
            deadline = Clock::time_point::max();
            signalGroup(child, SIGKILL);
        }
        if (sources[Error].revents != 0) {
            const std::lock_guard lock(m_mutex);
            if (!readStandardError())
                sources[Error].fd = -1;
            m_changed.notify_all();
        }
        if (sources[Output].revents != 0 && !readOutput())
            sources[Output].fd = -1;
        if (sources[Wake].revents != 0) {
            sources[Wake] = {-1, 0, 0};
            signalGroup(child, SIGTERM);
            deadline = Clock::now() + patience;
        }
    }
}

bool DXSSHProcess::readOutput()
{
    const bool goesOn = readAll(m_output.number(), m_outputSoFar, nullptr);
    if (!m_outputSoFar.contains(m_command.readyMark))
        return goesOn;
    becomeOpen();
    m_output.close();
    return false;
}

bool DXSSHProcess::readStandardError() const
{
    const bool isOpening = m_state == State::Opening;
    return readAll(m_standardError.number(), m_text, isOpening ? &m_openingText : nullptr);
}

void DXSSHProcess::becomeOpen()
{
    const std::lock_guard lock(m_mutex);
    readStandardError();
    m_text.clear();
    m_state = State::Open;
    m_changed.notify_all();
}

void DXSSHProcess::finish(const Ending &ending)
{
    const std::lock_guard lock(m_mutex);
    readStandardError();
    m_ending = ending;
    m_state = State::Ended;
    m_changed.notify_all();
}
