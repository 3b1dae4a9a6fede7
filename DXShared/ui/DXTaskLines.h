// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QMap>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <functional>

class QLabel;

/// A line for each task that goes on in the background, which tells how far it is and cancels it.
/// Hidden while there is none, and for a moment after one began: what ends at once shows nothing.
/// [main]
class DXSHARED_EXPORT DXTaskLines : public QWidget
{
    Q_OBJECT

public:
    struct Task
    {
        /// How far it is, in words.
        std::function<QString()> progress;
        std::function<void()> cancel;
    };

    explicit DXTaskLines(QWidget *parent = nullptr);

    bool isBusy() const { return !m_lines.isEmpty(); }
    /// Cancels what was begun last.
    void cancel();

Q_SIGNALS:
    void busyChanged(bool isBusy);

protected:
    /// A number for the next task; later ones are higher.
    quint64 nextNumber() { return ++m_lastNumber; }
    void add(quint64 number, const Task &task);
    /// Takes the line of a task that has ended away; nothing when that has been done.
    void remove(quint64 number);

private:
    struct Line
    {
        Task task;
        QWidget *widget;
        QLabel *label;
    };

    void update();

    QMap<quint64, Line> m_lines;
    quint64 m_lastNumber = 0;
    QTimer m_timer;
};
