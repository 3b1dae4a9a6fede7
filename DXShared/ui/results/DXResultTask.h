// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "ui/results/DXResultText.h"

#include <atomic>
#include <functional>
#include <memory>

/// Writes rows of a result in the background, onto the clipboard or into a file. The result is held
/// until that has ended, whatever becomes of the windows that show it.
class DXSHARED_EXPORT DXResultTask final
{
public:
    using Result = std::shared_ptr<const DXQueryResultDetails>;
    enum class Outcome {
        Done,
        /// As much as there was, of a statement that did not come to its end.
        Incomplete,
        Cancelled,
        Failed
    };
    /// What became of a task, with a message for the user. Called once, on the main thread.
    using Ended = std::function<void(Outcome outcome, const QString &message)>;

    /// No more bytes are put on the clipboard, which programs hold in memory, often twice.
    static constexpr qsizetype mostCopied = 256 * 1024 * 1024;

    /// Puts area on the clipboard. Stops beyond limit bytes. [main]
    static std::shared_ptr<DXResultTask> copy(const Result &result, DXResultText::Format format,
                                              const DXResultArea &area,
                                              const DXResultText::Dialect &dialect,
                                              const Ended &ended, qsizetype limit = mostCopied);
    /// Saves all rows as CSV, columns in the statement's order, those that are still to arrive
    /// included. A file that was there stays as it is unless all went well. [main]
    static std::shared_ptr<DXResultTask> save(const Result &result, const QString &path,
                                              const Ended &ended);

    /// How far it is, in words. [main]
    QString progress() const;
    /// Nothing is put on the clipboard or into the file. [any]
    void cancel() { m_isCancelled = true; }
    /// A file gets what has arrived by now. [any]
    void waitNoLonger() { m_waits = false; }

private:
    class Saving;

    explicit DXResultTask(const QString &title, qsizetype total = -1)
        : m_title(title)
        , m_total(total)
    { }

    const QString m_title;
    // Negative while it is not known.
    const qsizetype m_total;
    std::atomic<qsizetype> m_rows = 0;
    std::atomic<bool> m_isCancelled = false;
    std::atomic<bool> m_waits = true;
};
