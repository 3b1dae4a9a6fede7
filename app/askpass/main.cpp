// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// dabro-askpass PROMPT: what ssh starts to ask its user (SSH_ASKPASS, ssh(1)). It hands the
// question to the program that opened the tunnel, over the socket named in DABRO_ASKPASS_SOCKET,
// and prints the answer. Nothing of Qt: it has to be there at once.
#include <cstdlib>
#include <cstring>
#include <string>

#include <cerrno>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

int connectTo(const char *path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (!path || std::strlen(path) >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path, std::strlen(path));
    const int channel = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (channel >= 0
        && connect(channel, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return channel;
    return -1;
}

bool writeAll(int descriptor, const std::string &text)
{
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t written = write(descriptor, text.data() + done, text.size() - done);
        if (written < 0 && errno != EINTR)
            return false;
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

std::string readAll(int descriptor)
{
    std::string text;
    char buffer[4096];
    for (;;) {
        const ssize_t got = read(descriptor, buffer, sizeof buffer);
        if (got > 0)
            text.append(buffer, static_cast<std::size_t>(got));
        else if (got == 0 || errno != EINTR)
            return text;
    }
}

} // namespace

int main(int argc, char **argv)
{
    const int channel = connectTo(std::getenv("DABRO_ASKPASS_SOCKET"));
    if (channel < 0)
        return EXIT_FAILURE;
    const char *const hint = std::getenv("SSH_ASKPASS_PROMPT");
    // Who asks tells a second attempt at the same question from another tunnel's first.
    std::string question = std::to_string(getppid()) + ' ' + (hint ? hint : "") + '\n';
    question += argc > 1 ? argv[1] : "";
    question += '\0';
    if (!writeAll(channel, question))
        return EXIT_FAILURE;
    // "Y" and the answer; nothing when there is none.
    const std::string answer = readAll(channel);
    if (answer.empty() || answer.front() != 'Y')
        return EXIT_FAILURE;
    return writeAll(STDOUT_FILENO, answer.substr(1) + '\n') ? EXIT_SUCCESS : EXIT_FAILURE;
}
