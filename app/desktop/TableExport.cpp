// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TableExport.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "core/DXFieldText.h"
#include "dispatch/DXDispatch.h"
#include "ui/results/DXResultText.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <cerrno>

namespace
{

QByteArray headings(const DatabaseResultSet &rows)
{
    QByteArray line;
    for (const QString &name : rows.columnNames()) {
        if (!line.isEmpty())
            line += ',';
        DXFieldText::appendCsv(line, name.toUtf8());
    }
    return line + '\n';
}

QByteArray row(const DatabaseResultSet &rows)
{
    QByteArray line;
    for (quint32 column = 0; column < rows.columnCount(); ++column) {
        if (column > 0)
            line += ',';
        const DXValue value = rows.objectForColumnIndex(column);
        if (!value.isNull())
            DXFieldText::appendCsv(line, DXResultText::textOf(value).toUtf8());
    }
    return line + '\n';
}

} // namespace

void TableExport::start(const std::shared_ptr<DabroDBC> &details, const Done &done)
{
    DX_ASSERT_MAIN();
    DXDispatch::background([self = shared_from_this(), details, done] {
        const DXError error = self->run(*details);
        DXDispatch::main([done, error] { done(error); });
    });
}

void TableExport::cancel()
{
    m_isCancelled = true;
    // A server may be slow to take it.
    DXDispatch::background([self = shared_from_this()] {
        const std::lock_guard lock(self->m_mutex);
        if (self->m_client)
            self->m_client->cancelCurrentQuery(nullptr);
    });
}

DXError TableExport::run(const DabroDBC &details)
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return {QString(), 0, file.errorString()};
    DXError error;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *failure) {
            setClient(&client);
            read(client, file, failure);
            setClient(nullptr);
        },
        details, &error, {.allowPooled = DabroDatabaseConnectionPool::AllowPooled::No});
    if (error)
        return error;
    if (m_isCancelled)
        return {QString(), ECANCELED, QCoreApplication::translate("TableExport", "Cancelled.")};
    return file.commit() ? DXError() : DXError(QString(), 0, file.errorString());
}

void TableExport::setClient(DabroDatabaseClient *client)
{
    const std::lock_guard lock(m_mutex);
    m_client = client;
}

void TableExport::read(DabroDatabaseClient &client, QIODevice &file, DXError *error)
{
    if (m_isCancelled)
        return;
    const auto rows = client.executeQuery(QStringLiteral("SELECT * FROM ") + m_tablePath, error);
    if (rows && !*error)
        write(*rows, file, error);
}

void TableExport::write(DatabaseResultSet &rows, QIODevice &file, DXError *error)
{
    const auto put = [&file, error](const QByteArray &text) {
        if (file.write(text) == text.size())
            return true;
        DXError::report(error, DXError(QString(), 0, file.errorString()));
        return false;
    };
    if (!put(headings(rows)))
        return;
    while (!m_isCancelled && rows.next(error) && put(row(rows)))
        ++m_rowCount;
}
