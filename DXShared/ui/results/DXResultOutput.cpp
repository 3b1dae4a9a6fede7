// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultOutput.h"

#include "ui/DXAlwaysVisibleUserNotification.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

namespace
{

using Outcome = DXResultTask::Outcome;

// So much is copied before anybody could notice.
constexpr qsizetype fewCells = 10'000;
constexpr qsizetype fewBytes = 1024 * 1024;

/// There is one clipboard, so there is one copy at a time, whichever tab began it.
std::weak_ptr<DXResultTask> &copyUnderWay()
{
    static std::weak_ptr<DXResultTask> task;
    return task;
}

// Null when it is too much to be done at once.
QString smallText(const DXQueryResultDetails &result, DXResultText::Format format,
                  const DXResultArea &area, const DXResultText::Dialect &dialect)
{
    if (area.cellCount() > fewCells)
        return {};
    QByteArray bytes;
    const auto take = [&bytes](const QByteArray &piece) {
        bytes += piece;
        return bytes.size() <= fewBytes;
    };
    return DXResultText::write(result, format, area, dialect, take)
               ? QString::fromUtf8(bytes.isNull() ? QByteArray("") : bytes)
               : QString();
}

} // namespace

DXResultOutput::DXResultOutput(QWidget *parent)
    : DXTaskLines(parent)
{
    // What the user put there later is not overwritten.
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (const auto copy = m_copy.lock())
            copy->cancel();
    });
}

DXResultOutput::~DXResultOutput()
{
    for (const auto &task : std::as_const(m_tasks))
        task->waitNoLonger();
    if (const auto copy = m_copy.lock())
        copy->cancel();
}

void DXResultOutput::copy(const DXResultTask::Result &result, DXResultText::Format format,
                          const DXResultArea &area, const DXResultText::Dialect &dialect)
{
    if (const auto copy = copyUnderWay().lock())
        copy->cancel();
    const QString text =
        area.cellCount() == 1 && format == DXResultText::Format::Tsv
            ? DXResultText::textOf(result->value(area.blocks.constFirst().firstRow,
                                                 quint32(area.columns.constFirst())))
            : smallText(*result, format, area, dialect);
    if (!text.isNull() || area.cellCount() == 1) {
        QGuiApplication::clipboard()->setText(text);
        return;
    }
    const quint64 number = nextNumber();
    const auto task = DXResultTask::copy(result, format, area, dialect, ender(number));
    m_copy = task;
    copyUnderWay() = task;
    add(number, task);
}

void DXResultOutput::saveCsv(const DXResultTask::Result &result, const QString &path)
{
    const quint64 number = nextNumber();
    add(number, DXResultTask::save(result, path, ender(number)));
}

DXResultTask::Ended DXResultOutput::ender(quint64 number)
{
    return [output = QPointer(this), number](Outcome outcome, const QString &message) {
        if (output) {
            output->m_tasks.remove(number);
            output->remove(number);
            Q_EMIT output->ended(outcome, message);
        } else if (outcome == Outcome::Failed || outcome == Outcome::Incomplete) {
            DXAlwaysVisibleUserNotification{.title = tr("Result"), .text = message}.deliver();
        }
    };
}

void DXResultOutput::add(quint64 number, const std::shared_ptr<DXResultTask> &task)
{
    m_tasks.insert(number, task);
    DXTaskLines::add(number, {.progress = [task] { return task->progress(); },
                              .cancel = [task] { task->cancel(); }});
}
