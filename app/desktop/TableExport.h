// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

class DabroDBC;
class DabroDatabaseClient;
class DatabaseResultSet;
class QIODevice;

/// Writes the rows of a table into a file as CSV, one after the other, so that it may be larger
/// than the memory. A file that was there stays as it is unless all of them could be written.
class TableExport final : public std::enable_shared_from_this<TableExport>
{
public:
    /// What became of it; without an error all is in the file. [main]
    using Done = std::function<void(const DXError &error)>;

    /// Of a table whose name is quoted already, over a connection of its own.
    TableExport(const QString &tablePath, const QString &path)
        : m_tablePath(tablePath)
        , m_path(path)
    { }

    /// Begins in the background. done is called once. [main]
    void start(const std::shared_ptr<DabroDBC> &details, const Done &done);
    /// Stops soon, with an error. [main]
    void cancel();

    const QString &tablePath() const { return m_tablePath; }
    const QString &path() const { return m_path; }
    /// So many rows have been written. [any]
    qint64 rowCount() const { return m_rowCount; }

private:
    DXError run(const DabroDBC &details);
    void read(DabroDatabaseClient &client, QIODevice &file, DXError *error);
    void write(DatabaseResultSet &rows, QIODevice &file, DXError *error);
    void setClient(DabroDatabaseClient *client);

    const QString m_tablePath;
    const QString m_path;
    std::atomic<qint64> m_rowCount = 0;
    std::atomic<bool> m_isCancelled = false;
    // Held while the client is told to cancel, so that it does not go away meanwhile.
    std::mutex m_mutex;
    DabroDatabaseClient *m_client = nullptr;
};
