// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXTaskLines.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

constexpr auto betweenUpdates = std::chrono::milliseconds(150);

} // namespace

DXTaskLines::DXTaskLines(QWidget *parent)
    : QWidget(parent)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    hide();
    m_timer.setInterval(betweenUpdates);
    connect(&m_timer, &QTimer::timeout, this, &DXTaskLines::update);
}

void DXTaskLines::cancel()
{
    if (isBusy()) {
        const Task last = m_lines.last().task;
        last.cancel();
    }
}

void DXTaskLines::add(quint64 number, const Task &task)
{
    auto *const line = new QWidget;
    auto *const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    auto *const cancel = new QPushButton(tr("Cancel"));
    cancel->setAutoDefault(false);
    // The button goes away with its line, which may be what cancelling does.
    connect(cancel, &QPushButton::clicked, this, task.cancel, Qt::QueuedConnection);
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

void DXTaskLines::remove(quint64 number)
{
    const auto found = m_lines.constFind(number);
    if (found == m_lines.cend())
        return;
    delete found->widget;
    m_lines.erase(found);
    if (isBusy())
        return;
    m_timer.stop();
    hide();
    Q_EMIT busyChanged(false);
}

void DXTaskLines::update()
{
    for (const Line &line : std::as_const(m_lines))
        line.label->setText(line.task.progress());
    show();
}
