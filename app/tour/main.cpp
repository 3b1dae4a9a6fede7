// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later

// dabro-tour FOLDER light…|dark… URI: takes the client through what it can do, on the demo database
// that the URI names, and leaves a picture of every station in the folder. Fails when a station
// does not look as it should after a while.
#include "cli/CliProcess.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "desktop/MainWindow.h"
#include "dispatch/DXDispatch.h"
#include "tour/Tour.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char **argv)
{
    CliProcess::prepare("dabro");
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("dabro"));
    QApplication::setApplicationName(QStringLiteral("dabro-tour"));
    QApplication::setApplicationDisplayName(QStringLiteral("Dabro"));
    QLoggingCategory::setFilterRules(QStringLiteral("org.dabro=false"));
    // Each tour begins on an empty desk, and leaves the user's own alone.
    const QTemporaryDir home;
    for (const char *const variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, home.path().toUtf8());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("dabro-tour FOLDER light…|dark… URI\n", stderr);
        return 2;
    }
    bool hasArrived = false;
    {
        MainWindow window;
        Tour tour(window, {.folder = arguments[1], .name = arguments[2], .uri = arguments[3]});
        hasArrived = tour.run();
    }
    DabroDatabaseConnectionPool::shutdown();
    DXDispatch::shutdown();
    return hasArrived ? 0 : 1;
}
