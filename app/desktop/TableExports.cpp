// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TableExports.h"

#include "client/DabroDBC.h"
#include "desktop/TableExport.h"

#include <QLocale>
#include <QPointer>

TableExports::~TableExports()
{
    for (const auto &job : std::as_const(m_exports))
        job->cancel();
}

void TableExports::start(const QString &tablePath, const std::shared_ptr<DabroDBC> &details,
                         const QString &path)
{
    const quint64 number = nextNumber();
    const auto job = std::make_shared<TableExport>(tablePath, path);
    m_exports.insert(number, job);
    add(number, {.progress =
                     [job] {
                         return tr("Exporting %1: %2 rows")
                             .arg(job->tablePath(), QLocale().toString(job->rowCount()));
                     },
                 .cancel = [this, number] { stop(number); }});
    job->start(details, [exports = QPointer(this), number](const DXError &error) {
        if (exports)
            exports->end(number, error ? error.description().trimmed() : QString());
    });
}

QStringList TableExports::tables() const
{
    QStringList tables;
    for (const auto &job : m_exports)
        tables += job->tablePath();
    return tables;
}

// At once, whatever the server does.
void TableExports::stop(quint64 number)
{
    const auto job = m_exports.take(number);
    job->cancel();
    remove(number);
    Q_EMIT cancelled(
        tr("The export of %1 was cancelled. Nothing was saved.").arg(job->tablePath()));
}

void TableExports::end(quint64 number, const QString &failure)
{
    const auto job = m_exports.take(number);
    if (!job)
        return;
    remove(number);
    const QString &table = job->tablePath();
    const QString &path = job->path();
    if (!failure.isEmpty())
        Q_EMIT failed(path, tr("Could not export %1 to %2.").arg(table, path), failure);
    else
        Q_EMIT succeeded(path, tr("%1 rows of %2 were exported to %3.")
                                   .arg(QLocale().toString(job->rowCount()), table, path));
}
