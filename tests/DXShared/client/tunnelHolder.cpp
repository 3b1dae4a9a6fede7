// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Opens a tunnel, prints its own number and the local port, and waits to be killed. Arguments: the
// port and the user of the SSH server, the private key, the ssh_config, the port of the target.

#include "client/ssh/DXSSHTunnel.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>
#include <thread>

#include <unistd.h>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const DXSSHTunnelModel model{.host = QStringLiteral("127.0.0.1"),
                                 .port = arguments.value(1).toUShort(),
                                 .username = arguments.value(2),
                                 .identityFile = arguments.value(3),
                                 .configurationFile = arguments.value(4)};
    std::unique_ptr<DXSSHTunnel> tunnel;
    std::thread([&] {
        DXError error;
        tunnel = DXSSHTunnel::open(model, QStringLiteral("127.0.0.1"),
                                   arguments.value(5).toUShort(), nullptr, &error);
        if (!tunnel)
            std::fprintf(stderr, "%s\n", qPrintable(error.description()));
    }).join();
    if (!tunnel)
        return 1;
    std::printf("%d %d\n", getpid(), tunnel->localPort());
    std::fflush(stdout);
    pause();
    return 0;
}
