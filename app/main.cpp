// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"
#include "cli/CliProcess.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/secrets/DXSecretStore.h"
#include "desktop/MainWindow.h"
#include "dispatch/DXDispatch.h"

#include <QApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

namespace
{

const char *const usage =
    "dabro [CONNECTION|FILE]...\n"
    "Opens the window with these connections, given as URIs or as key=value strings, and files\n"
    "of SQL. Qt's options, such as -platform and -style, are understood as well.\n";

// For whoever asks without a display.
bool answers(const QStringList &arguments)
{
    if (arguments.contains(u"--help"))
        std::fputs(usage, stdout);
    else if (arguments.contains(u"--version"))
        std::puts("dabro " DABRO_VERSION);
    else
        return false;
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    CliProcess::prepare("dabro");
    const QStringList texts = CliArguments::take(argc, argv, CliArguments::Connections::Any);
    if (answers(texts))
        return 0;
    const std::vector<char *> all(argv + 1, argv + argc);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("dabro"));
    QApplication::setApplicationName(QStringLiteral("dabro"));
    QApplication::setApplicationDisplayName(QStringLiteral("Dabro"));
    QApplication::setApplicationVersion(QStringLiteral(DABRO_VERSION));
    QLoggingCategory::setFilterRules(QStringLiteral("org.dabro=false"));

    int status = 0;
    {
        MainWindow window;
        window.show();
        // Without those that Qt took.
        QStringList arguments;
        for (int index = 1; index < argc; ++index)
            arguments.append(texts[std::ranges::find(all, argv[index]) - all.begin()]);
        window.openArguments(arguments);
        status = QApplication::exec();
    }
    DXSecretStore::sharedInstance().finish();
    // All is saved: a server that answers nobody does not keep the program from ending.
    constexpr unsigned int seconds = 5;
    ::alarm(seconds);
    DabroDatabaseConnectionPool::shutdown();
    DXDispatch::shutdown();
    return status;
}
