// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultTask.h"

#include "dispatch/DXDispatch.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QSaveFile>

#include <algorithm>
#include <numeric>

namespace
{

constexpr auto betweenArrivals = std::chrono::milliseconds(50);

QString tr(const char *text)
{
    return QCoreApplication::translate("DXResultTask", text);
}

QString rowsText(qsizetype rows)
{
    return rows == 1 ? tr("1 row") : tr("%1 rows").arg(QLocale().toString(rows));
}

bool hasFailed(const DXQueryResultDetails &result)
{
    return std::ranges::any_of(result.messages(), [](const DXQueryMessage &message) {
        return message.color == DXMessageColor::Red;
    });
}

} // namespace

QString DXResultTask::progress() const
{
    if (m_total < 0)
        return tr("%1: %2").arg(m_title, rowsText(m_rows));
    return tr("%1: %2 of %3").arg(m_title, QLocale().toString(m_rows.load()), rowsText(m_total));
}

std::shared_ptr<DXResultTask> DXResultTask::copy(const Result &result, DXResultText::Format format,
                                                 const DXResultArea &area,
                                                 const DXResultText::Dialect &dialect,
                                                 const Ended &ended, qsizetype limit)
{
    DX_ASSERT_MAIN();
    const std::shared_ptr<DXResultTask> task(
        new DXResultTask(tr("Copying to the clipboard"), area.rowCount()));
    DXDispatch::background([=] {
        QByteArray bytes;
        DXResultText::write(*result, format, area, dialect, [&](const QByteArray &piece) {
            bytes += piece;
            // Some formats begin and end with a piece that is no row.
            task->m_rows = std::min(task->m_rows + 1, task->m_total);
            return bytes.size() <= limit && !task->m_isCancelled;
        });
        const bool isTooMuch = bytes.size() > limit;
        const QString text =
            isTooMuch || task->m_isCancelled ? QString() : QString::fromUtf8(bytes);
        DXDispatch::main([=] {
            if (task->m_isCancelled) {
                ended(Outcome::Cancelled, tr("Copying was cancelled."));
            } else if (isTooMuch) {
                ended(Outcome::Failed,
                      tr("What is selected has more than %1, which is too much for the clipboard. "
                         "Save the result as CSV instead.")
                          .arg(QLocale().formattedDataSize(limit)));
            } else {
                QGuiApplication::clipboard()->setText(text);
                ended(Outcome::Done, tr("%1 copied.").arg(rowsText(area.rowCount())));
            }
        });
    });
    return task;
}

/// Writes what has arrived, and comes back for what has not: no thread waits for a server.
class DXResultTask::Saving final : public std::enable_shared_from_this<Saving>
{
public:
    Saving(const std::shared_ptr<DXResultTask> &task, const Result &result, const QString &path,
           const Ended &ended)
        : m_task(task)
        , m_result(result)
        , m_file(path)
        , m_ended(ended)
        , m_area(DXResultArea::all(0, allColumns(*result)))
    { }

    /// [background]
    void begin()
    {
        if (m_file.open(QIODevice::WriteOnly) && write(DXResultText::Format::Csv))
            writeOn();
        else
            end(Outcome::Failed);
    }

private:
    static QList<int> allColumns(const DXQueryResultDetails &result)
    {
        QList<int> columns(result.columnNames().size());
        std::iota(columns.begin(), columns.end(), 0);
        return columns;
    }

    // The rows of m_area.
    bool write(DXResultText::Format format)
    {
        return DXResultText::write(*m_result, format, m_area, {}, [this](const QByteArray &piece) {
            return !m_task->m_isCancelled && m_file.write(piece) == piece.size();
        });
    }

    void writeOn()
    {
        // Asked before the count, so that the last rows are not missed.
        const bool isLast = m_result->isFinished() || !m_task->m_waits;
        DXResultArea::Block &block = m_area.blocks.first();
        do {
            block.firstRow += block.rowCount;
            block.rowCount = std::min(m_result->rows()->rowCount() - block.firstRow, rowsAtOnce);
            if (!write(DXResultText::Format::CsvWithoutNames)) {
                end(Outcome::Failed);
                return;
            }
            m_task->m_rows += block.rowCount;
        } while (block.rowCount > 0);
        if (!isLast)
            DXDispatch::backgroundAfter(betweenArrivals,
                                        [self = shared_from_this()] { self->writeOn(); });
        else
            end(m_file.commit() ? m_result->isFinished() && !hasFailed(*m_result)
                                      ? Outcome::Done
                                      : Outcome::Incomplete
                                : Outcome::Failed);
    }

    void end(Outcome outcome)
    {
        if (m_task->m_isCancelled && outcome == Outcome::Failed)
            outcome = Outcome::Cancelled;
        DXDispatch::main(
            [ended = m_ended, outcome, message = messageFor(outcome)] { ended(outcome, message); });
    }

    QString messageFor(Outcome outcome) const
    {
        const QString path = m_file.fileName();
        const QString rows = rowsText(m_task->m_rows);
        switch (outcome) {
        case Outcome::Done:
            return tr("%1 saved to %2.").arg(rows, path);
        case Outcome::Incomplete:
            return tr("The statement did not come to its end. Only what had arrived, %1, was saved "
                      "to %2.")
                .arg(rows, path);
        case Outcome::Cancelled:
            return tr("Saving to %1 was cancelled. Nothing was saved.").arg(path);
        case Outcome::Failed:
            return tr("Could not save to %1: %2.").arg(path, m_file.errorString());
        }
        return {};
    }

    static constexpr qsizetype rowsAtOnce = 1000;

    const std::shared_ptr<DXResultTask> m_task;
    const Result m_result;
    QSaveFile m_file;
    const Ended m_ended;
    DXResultArea m_area;
};

std::shared_ptr<DXResultTask> DXResultTask::save(const Result &result, const QString &path,
                                                 const Ended &ended)
{
    DX_ASSERT_MAIN();
    const std::shared_ptr<DXResultTask> task(
        new DXResultTask(tr("Saving to %1").arg(QFileInfo(path).fileName())));
    DXDispatch::background(
        [saving = std::make_shared<Saving>(task, result, path, ended)] { saving->begin(); });
    return task;
}
