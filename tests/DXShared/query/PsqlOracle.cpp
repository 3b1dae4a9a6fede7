// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/query/PsqlOracle.h"

#include "support/PostgresCluster.h"
#include "support/PrintQt.h"
#include "support/Program.h"
#include "support/ServerPrograms.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

// What the log of psql writes around each query that it sends.
const auto before = QStringLiteral("********* QUERY **********\n");
const auto behind = QStringLiteral("\n**************************\n\n");

} // namespace

QStringList sentByPsql(const QString &script)
{
    const PostgresCluster &server = PostgresCluster::shared();
    const QTemporaryDir folder;
    const QString log = folder.filePath(QStringLiteral("log"));
    Program::Init init{.program = ServerPrograms::psql(),
                       .arguments = {QStringLiteral("--no-psqlrc"), QStringLiteral("--quiet"),
                                     QStringLiteral("--host"), server.socketFolder(),
                                     QStringLiteral("--port"), QString::number(server.port()),
                                     QStringLiteral("--username"), PostgresCluster::superuser(),
                                     QStringLiteral("--dbname=postgres"),
                                     QStringLiteral("--file=-"), QStringLiteral("--log-file"), log},
                       .input = "begin;\nselect 1 / 0;\n" + script.toUtf8(),
                       .environment = ServerPrograms::environment()};
    init.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    init.environment.insert(QStringLiteral("PGCLIENTENCODING"), QStringLiteral("UTF8"));
    const Program program(init);
    QFile file(log);
    if (!program.succeeded() || !file.open(QFile::ReadOnly)) {
        ADD_FAILURE() << program.failure().toStdString();
        return {};
    }
    QStringList sent;
    const QString written = QString::fromUtf8(file.readAll());
    for (qsizetype at = written.indexOf(before); at >= 0; at = written.indexOf(before, at)) {
        at += before.size();
        const qsizetype end = written.indexOf(behind, at);
        sent.append(written.sliced(at, end - at));
        at = end;
    }
    return sent.mid(2);
}
