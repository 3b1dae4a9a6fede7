// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXTextRecord.h"
#include "core/DXError.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <memory>
#include <mutex>

/// The files of a text journal: in the folder's part that this process owns, one file a text, with
/// a line that tells what it is before the text itself. A process owns a part by a lock that the
/// system takes away when it ends, however it ends. Blocks for as long as files take. [any]
class DXTextJournalFolder final
{
public:
    /// A record, and when it was made among all: of two, the later one stays.
    struct Version
    {
        DXTextRecord record;
        quint64 number = 0;
    };

    /// The first part that nobody owns, with the texts of all that nobody owns. Nothing, with error
    /// set, when there can be none.
    static std::shared_ptr<DXTextJournalFolder> open(const QString &folder, DXError *error);
    ~DXTextJournalFolder();

    QList<DXTextRecord> records() const { return m_records; }
    QStringList unreadFiles() const { return m_unreadFiles; }

    /// Writes the versions that are the latest of their text; answers those that could not be
    /// written, whose files are as they were, with the last failure in error.
    QList<Version> write(const QList<Version> &versions, DXError *error);
    /// Removes a text, unless a later version was written.
    void remove(const QString &id, quint64 number);

private:
    class Part;

    DXTextJournalFolder();
    Q_DISABLE_COPY_MOVE(DXTextJournalFolder)

    void takeOver(const QString &otherPath);
    void readTexts();
    QString pathOf(const QString &id) const;
    bool isLatest(const QString &id, quint64 number);

    std::unique_ptr<Part> m_part;
    QList<DXTextRecord> m_records;
    QStringList m_unreadFiles;
    std::mutex m_mutex;
    // The last version of each text that was written or removed.
    QHash<QString, quint64> m_numbers;
};
