// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXTextJournal.h"

#include "client/DXTextJournalFolder.h"
#include "dispatch/DXDispatch.h"

#include <QHash>
#include <QTimer>

#include <chrono>
#include <utility>

namespace
{

constexpr std::chrono::milliseconds writesAfter(500);
constexpr std::chrono::seconds triesAgainAfter(3);

} // namespace

// What is to be written. Belongs to the main thread; only the folder is used by others.
class DXTextJournal::Schedule final : public std::enable_shared_from_this<Schedule>
{
public:
    explicit Schedule(const std::shared_ptr<DXTextJournalFolder> &files)
        : m_folder(files)
    { }

    DXTextJournalFolder &folder() const { return *m_folder; }
    void setFailureHandler(const FailureHandler &handler) { m_failureHandler = handler; }
    void changed(const QString &id, const Snapshot &snapshot);
    void remove(const QString &id);
    bool flush(DXError *error);

private:
    using Versions = QList<DXTextJournalFolder::Version>;

    void wake(std::chrono::milliseconds after);
    Versions takeVersions();
    void write();
    void written(const Versions &failed, const DXError &error);

    const std::shared_ptr<DXTextJournalFolder> m_folder;
    FailureHandler m_failureHandler;
    QHash<QString, Snapshot> m_changed;
    QHash<QString, DXTextJournalFolder::Version> m_failed;
    quint64 m_number = 0;
    bool m_isAwake = false;
    bool m_reportsFailure = true;
};

void DXTextJournal::Schedule::changed(const QString &id, const Snapshot &snapshot)
{
    DX_ASSERT_MAIN();
    m_changed[id] = snapshot;
    wake(writesAfter);
}

void DXTextJournal::Schedule::wake(std::chrono::milliseconds after)
{
    if (std::exchange(m_isAwake, true))
        return;
    QTimer::singleShot(after, [self = weak_from_this()] {
        if (const auto schedule = self.lock()) {
            schedule->m_isAwake = false;
            schedule->write();
        }
    });
}

void DXTextJournal::Schedule::remove(const QString &id)
{
    DX_ASSERT_MAIN();
    m_changed.remove(id);
    m_failed.remove(id);
    const quint64 number = ++m_number;
    const auto forget = [folder = m_folder, id, number] { folder->remove(id, number); };
    if (!DXDispatch::background(forget))
        forget();
}

// What changed goes before what failed: it is newer.
DXTextJournal::Schedule::Versions DXTextJournal::Schedule::takeVersions()
{
    Versions versions;
    for (const Snapshot &snapshot : std::as_const(m_changed))
        versions += {snapshot(), ++m_number};
    for (auto failed = m_failed.cbegin(); failed != m_failed.cend(); ++failed) {
        if (!m_changed.contains(failed.key()))
            versions += *failed;
    }
    m_changed.clear();
    m_failed.clear();
    return versions;
}

void DXTextJournal::Schedule::write()
{
    const Versions versions = takeVersions();
    if (versions.isEmpty())
        return;
    DXDispatch::background([folder = m_folder, versions, self = weak_from_this()] {
        DXError error;
        const Versions failed = folder->write(versions, &error);
        DXDispatch::main([self, failed, error] {
            if (const auto schedule = self.lock())
                schedule->written(failed, error);
        });
    });
}

void DXTextJournal::Schedule::written(const Versions &failed, const DXError &error)
{
    for (const auto &version : failed) {
        if (m_failed.value(version.record.id).number < version.number)
            m_failed.insert(version.record.id, version);
    }
    const bool isNews = error.isEmpty() != m_reportsFailure;
    m_reportsFailure = error.isEmpty();
    if (!failed.isEmpty())
        wake(triesAgainAfter);
    if (isNews && m_failureHandler)
        m_failureHandler(error);
}

bool DXTextJournal::Schedule::flush(DXError *error)
{
    DX_ASSERT_MAIN();
    const Versions failed = m_folder->write(takeVersions(), error);
    for (const auto &version : failed)
        m_failed.insert(version.record.id, version);
    return failed.isEmpty();
}

std::unique_ptr<DXTextJournal> DXTextJournal::open(const QString &folder, DXError *error)
{
    const auto files = DXTextJournalFolder::open(folder, error);
    if (!files)
        return {};
    return std::unique_ptr<DXTextJournal>(new DXTextJournal(std::make_shared<Schedule>(files)));
}

DXTextJournal::DXTextJournal(const std::shared_ptr<Schedule> &schedule)
    : d(schedule)
{ }

DXTextJournal::~DXTextJournal() = default;

QList<DXTextRecord> DXTextJournal::records() const
{
    return d->folder().records();
}

QStringList DXTextJournal::unreadFiles() const
{
    return d->folder().unreadFiles();
}

void DXTextJournal::setFailureHandler(const FailureHandler &handler)
{
    d->setFailureHandler(handler);
}

void DXTextJournal::changed(const QString &id, const Snapshot &snapshot)
{
    d->changed(id, snapshot);
}

void DXTextJournal::remove(const QString &id)
{
    d->remove(id);
}

bool DXTextJournal::flush(DXError *error)
{
    return d->flush(error);
}
