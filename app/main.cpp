// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliProcess.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "desktop/MainWindow.h"
#include "dispatch/DXDispatch.h"

#include <QApplication>
#include <QLoggingCategory>

#include <unistd.h>

int main(int argc, char **argv)
{
    CliProcess::prepare("dabro");
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
        window.openArguments(QApplication::arguments().mid(1));
        status = QApplication::exec();
    }
    // All is saved: a server that answers nobody does not keep the program from ending.
    constexpr unsigned int seconds = 5;
    ::alarm(seconds);
    DabroDatabaseConnectionPool::shutdown();
    DXDispatch::shutdown();
    return status;
}
