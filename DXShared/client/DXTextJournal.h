// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXTextRecord.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// Keeps the texts of editors on disk while they are written, so that they are back after the
/// program or the machine stopped at any moment. A text is written within a second of a change, in
/// the background, beside the copy before it, which it replaces only when it is whole; what cannot
/// be written is tried again. Texts may hold secrets: only the user can read the files.
///
/// A folder serves any number of running programs: each owns a part of its own for as long as it
/// lives, and takes over the texts of those that are gone. Operations are [main] unless they say
/// otherwise.
class DXSHARED_EXPORT DXTextJournal final
{
public:
    using Record = DXTextRecord;
    /// Gives a record as it is now. It stays callable until the next flush() or its remove().
    using Snapshot = std::function<Record()>;
    /// Told when texts cannot be written, once until they can, and then with an empty error.
    using FailureHandler = std::function<void(const DXError &error)>;

    /// Takes a part of folder, which is made when it is not there. Nothing, with error set, when it
    /// cannot be used. Reads the texts that are there, so better called in the background. [any]
    static std::unique_ptr<DXTextJournal> open(const QString &folder, DXError *error);
    /// Gives the part free. What has changed since the last flush() and was not written is lost.
    ~DXTextJournal();

    /// What was there when the journal was opened. [any]
    QList<Record> records() const;
    /// Files there that could not be read; they stay where they are. [any]
    QStringList unreadFiles() const;

    void setFailureHandler(const FailureHandler &handler);
    /// Says that a text changed. A snapshot is asked for once, half a second later, however often
    /// it changes meanwhile.
    void changed(const QString &id, const Snapshot &snapshot);
    /// Forgets a text, when its editor is closed for good.
    void remove(const QString &id);
    /// Writes everything that changed, now, on this thread: before the editors go, at the
    /// program's end. *Result decides*: false, with error set, when a text could not be written.
    bool flush(DXError *error);

private:
    class Schedule;

    explicit DXTextJournal(const std::shared_ptr<Schedule> &schedule);
    Q_DISABLE_COPY_MOVE(DXTextJournal)

    std::shared_ptr<Schedule> d;
};
