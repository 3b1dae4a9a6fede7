// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultOutput.h"

#include "ui/DXAlwaysVisibleUserNotification.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

using Outcome = DXResultTask::Outcome;

constexpr auto betweenUpdates = std::chrono::milliseconds(150);
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
    : QWidget(parent)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    hide();
    m_timer.setInterval(betweenUpdates);
    connect(&m_timer, &QTimer::timeout, this, &DXResultOutput::update);
    // What the user put there later is not overwritten.
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (const auto copy = m_copy.lock())
            copy->cancel();
    });
}

DXResultOutput::~DXResultOutput()
{
    for (const Line &line : std::as_const(m_lines))
        line.task->waitNoLonger();
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
    const quint64 number = ++m_lastNumber;
    const auto task = DXResultTask::copy(result, format, area, dialect, ender(number));
    m_copy = task;
    copyUnderWay() = task;
    add(number, task);
}

void DXResultOutput::saveCsv(const DXResultTask::Result &result, const QString &path)
{
    const quint64 number = ++m_lastNumber;
    add(number, DXResultTask::save(result, path, ender(number)));
}

void DXResultOutput::cancel()
{
    if (!m_lines.isEmpty())
        m_lines.last().task->cancel();
}

DXResultTask::Ended DXResultOutput::ender(quint64 number)
{
    return [output = QPointer(this), number](Outcome outcome, const QString &message) {
        if (output) {
            output->remove(number);
            Q_EMIT output->ended(outcome, message);
        } else if (outcome == Outcome::Failed || outcome == Outcome::Incomplete) {
            DXAlwaysVisibleUserNotification{.title = tr("Result"), .text = message}.deliver();
        }
    };
}

void DXResultOutput::add(quint64 number, const std::shared_ptr<DXResultTask> &task)
{
    auto *const line = new QWidget;
    auto *const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    auto *const cancel = new QPushButton(tr("Cancel"));
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, [task] { task->cancel(); });
    auto *const row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(label, 1);
    row->addWidget(cancel);
    layout()->addWidget(line);
    m_lines.insert(number, {.task = task, .widget = line, .label = label});
    if (m_lines.size() == 1) {
        m_timer.start();
        Q_EMIT busyChanged(true);
    }
}

void DXResultOutput::remove(quint64 number)
{
    delete m_lines.take(number).widget;
    if (isBusy())
        return;
    m_timer.stop();
    hide();
    Q_EMIT busyChanged(false);
}

void DXResultOutput::update()
{
    for (const Line &line : std::as_const(m_lines))
        line.label->setText(line.task->progress());
    show();
}
