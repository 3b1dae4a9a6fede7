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

#include <QSaveFile>

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

// The number of rows written.
qint64 write(DatabaseResultSet &rows, QIODevice &file, DXError *error)
{
    const auto put = [&file, error](const QByteArray &text) {
        if (file.write(text) == text.size())
            return true;
        DXError::report(error, DXError(QString(), 0, file.errorString()));
        return false;
    };
    qint64 count = 0;
    if (put(headings(rows))) {
        while (rows.next(error) && put(row(rows)))
            ++count;
    }
    return count;
}

} // namespace

void TableExport::start(const QString &tablePath, const std::shared_ptr<DabroDBC> &details,
                        const QString &path, const std::function<void(const Result &result)> &done)
{
    DXDispatch::background([tablePath, details, path, done] {
        Result result;
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            result.error = DXError(QString(), 0, file.errorString());
        else
            DabroDatabaseConnectionPool::executeQuery(
                [&](DabroDatabaseClient &client, DXError *failure) {
                    const auto rows =
                        client.executeQuery(QStringLiteral("SELECT * FROM ") + tablePath, failure);
                    if (rows && !*failure)
                        result.rowCount = write(*rows, file, failure);
                },
                *details, &result.error,
                {.allowPooled = DabroDatabaseConnectionPool::AllowPooled::No});
        if (!result.error && !file.commit())
            result.error = DXError(QString(), 0, file.errorString());
        DXDispatch::main([done, result] { done(result); });
    });
}
