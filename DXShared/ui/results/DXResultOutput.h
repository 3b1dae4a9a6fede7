// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "ui/results/DXResultTask.h"

#include <QMap>
#include <QTimer>
#include <QWidget>

class QLabel;

/// Puts results on the clipboard and into files. What takes time is done in the background, with a
/// line for each task that tells how far it is and cancels it; the widget is hidden while there is
/// none. It outlives the pages of the results. [main]
class DXSHARED_EXPORT DXResultOutput final : public QWidget
{
    Q_OBJECT

public:
    explicit DXResultOutput(QWidget *parent = nullptr);
    /// Cancels a copy. Files are finished with what has arrived; the desktop tells when that fails.
    ~DXResultOutput() override;

    /// Puts area on the clipboard, a single cell as it is: at once when it is small, else it ends
    /// with ended(). Whatever else is copied meanwhile cancels it.
    void copy(const DXResultTask::Result &result, DXResultText::Format format,
              const DXResultArea &area, const DXResultText::Dialect &dialect = {});
    /// Saves all rows, those that are still to arrive included, and ends with ended().
    void saveCsv(const DXResultTask::Result &result, const QString &path);

    bool isBusy() const { return !m_lines.isEmpty(); }
    /// Cancels what was begun last.
    void cancel();

Q_SIGNALS:
    /// A task has ended, with a message for the user.
    void ended(DXResultTask::Outcome outcome, const QString &message);
    void busyChanged(bool isBusy);

private:
    struct Line
    {
        std::shared_ptr<DXResultTask> task;
        QWidget *widget;
        QLabel *label;
    };

    DXResultTask::Ended ender(quint64 number);
    void add(quint64 number, const std::shared_ptr<DXResultTask> &task);
    void remove(quint64 number);
    void update();

    // By the order in which they were begun.
    QMap<quint64, Line> m_lines;
    quint64 m_lastNumber = 0;
    std::weak_ptr<DXResultTask> m_copy;
    QTimer m_timer;
};
