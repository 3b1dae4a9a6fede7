// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResult.h"
#include "driver/PostgresDatabaseClient.h"
#include "support/PostgresCluster.h"

#include <QStringList>

#include <functional>
#include <future>
#include <memory>
#include <mutex>

/// What the tests of the client against real servers share. Functions that take a client run their
/// work in the background and wait for it beside the main event loop. [main]
namespace ServerAccess
{

using Record = std::shared_ptr<PostgresDatabaseConnectionDetails>;

/// A record of the cluster's superuser: on 127.0.0.1 when the cluster listens there, else on its
/// socket.
Record record(const PostgresCluster &cluster, const QString &database = QStringLiteral("postgres"));
Record recordOnLoopback(const PostgresCluster &cluster,
                        const QString &database = QStringLiteral("postgres"));

struct Attempt
{
    bool isConnected = false;
    DXError error;
    std::unique_ptr<PostgresDatabaseClient> client;
};
Attempt connect(const Record &record);
/// As connect(), and fails the running test when it does not connect. Never null.
std::unique_ptr<PostgresDatabaseClient> connected(const Record &record);

/// The first column of the first row as text; null for NULL. Fails the running test when the query
/// fails.
QString scalar(PostgresDatabaseClient &client, const QString &query);
/// The error of running query to its end, empty when it works.
DXError errorOf(PostgresDatabaseClient &client, const QString &query);
/// Runs text as a batch of one statement.
DXError runBatch(PostgresDatabaseClient &client, const QString &text, DXQueryResult &result);

/// Starts work in the background without waiting for it.
std::future<DXError> start(std::function<DXError()> work);
/// Waits for what start() began beside the main event loop. Work that does not end within a limit
/// ends the program.
DXError finish(std::future<DXError> &work);

/// Collects the lines and errors that are logged while it lives. [any]
class LoggedTexts final
{
public:
    LoggedTexts();
    QStringList texts() const;

private:
    Q_DISABLE_COPY_MOVE(LoggedTexts)

    void add(const QString &text);

    mutable std::mutex m_mutex;
    QStringList m_texts;
    std::shared_ptr<void> m_lines;
    std::shared_ptr<void> m_errors;
};

/// Sets a variable of the environment for a scope, as a user's shell would have. [main]
class EnvironmentVariable final
{
public:
    EnvironmentVariable(const char *name, const QString &value);
    ~EnvironmentVariable();

private:
    Q_DISABLE_COPY_MOVE(EnvironmentVariable)

    const char *const m_name;
};

} // namespace ServerAccess
