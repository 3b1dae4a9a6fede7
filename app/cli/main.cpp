// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"
#include "cli/CliProcess.h"
#include "cli/CliProgram.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "dispatch/DXDispatch.h"

#include <QCoreApplication>
#include <QLoggingCategory>

int main(int argc, char **argv)
{
    CliProcess::prepare("dabro-cli");
    const QStringList arguments = CliArguments::take(argc, argv);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("dabro-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(DABRO_VERSION));
    // Diagnostics are for whoever asks: QT_LOGGING_RULES="org.dabro.info=true" shows them.
    QLoggingCategory::setFilterRules(QStringLiteral("org.dabro=false"));

    CliProgram program(arguments);
    DXDispatch::main([&program] { program.start(); });
    const int status = QCoreApplication::exec();
    DabroDatabaseConnectionPool::shutdown();
    DXDispatch::shutdown();
    return status;
}
