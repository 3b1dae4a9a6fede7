// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "ui/DXTaskLines.h"
#include "ui/results/DXResultTask.h"

#include <QHash>

/// Puts results on the clipboard and into files, what takes time in the background. It outlives the
/// pages of the results. [main]
class DXSHARED_EXPORT DXResultOutput final : public DXTaskLines
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

Q_SIGNALS:
    /// A task has ended, with a message for the user.
    void ended(DXResultTask::Outcome outcome, const QString &message);

private:
    DXResultTask::Ended ender(quint64 number);
    void add(quint64 number, const std::shared_ptr<DXResultTask> &task);

    QHash<quint64, std::shared_ptr<DXResultTask>> m_tasks;
    std::weak_ptr<DXResultTask> m_copy;
};
