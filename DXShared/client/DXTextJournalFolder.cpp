// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXTextJournalFolder.h"

#include "core/DXGlobal.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr int mostParts = 1000;
constexpr QLatin1String suffix(".text");

DXError failure(const QString &text)
{
    return {DXProductName(u"textJournal"), 0, text};
}

bool makeOwnFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    return QDir().mkpath(path) && ::chmod(name.constData(), S_IRWXU) == 0;
}

QByteArray encode(const DXTextRecord &record)
{
    QJsonObject head{{u"id"_qs, record.id},
                     {u"title"_qs, record.title},
                     {u"caret"_qs, qint64(record.caret)},
                     {u"isModified"_qs, record.isModified},
                     {u"commitsManually"_qs, record.commitsManually},
                     {u"order"_qs, record.order}};
    if (!record.filePath.isNull())
        head.insert(u"filePath"_qs, record.filePath);
    if (!record.fileDigest.isNull())
        head.insert(u"fileDigest"_qs, QString::fromLatin1(record.fileDigest.toHex()));
    if (!record.connectionId.isNull())
        head.insert(u"connectionId"_qs, record.connectionId);
    if (!record.database.isNull())
        head.insert(u"database"_qs, record.database);
    return QJsonDocument(head).toJson(QJsonDocument::Compact) + '\n' + record.text.toUtf8();
}

std::optional<DXTextRecord> decode(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    const QJsonObject head =
        QJsonDocument::fromJson(bytes.first(std::max<qsizetype>(end, 0))).object();
    if (!head.value(u"id").isString())
        return std::nullopt;
    const auto optional = [&head](QStringView key) {
        return head.contains(key) ? head.value(key).toString(u""_qs) : QString();
    };
    return DXTextRecord{.id = head.value(u"id").toString(),
                        .title = head.value(u"title").toString(),
                        .filePath = optional(u"filePath"),
                        .connectionId = optional(u"connectionId"),
                        .database = optional(u"database"),
                        .commitsManually = head.value(u"commitsManually").toBool(),
                        .text = QString::fromUtf8(bytes.sliced(end + 1)),
                        .caret = static_cast<qsizetype>(head.value(u"caret").toInteger()),
                        .isModified = head.value(u"isModified").toBool(),
                        .fileDigest =
                            QByteArray::fromHex(head.value(u"fileDigest").toString().toLatin1()),
                        .order = head.value(u"order").toInt()};
}

QStringList textsIn(const QDir &folder)
{
    return folder.entryList({u'*' + suffix}, QDir::Files, QDir::Name);
}

} // namespace

// A part that this process owns while the object lives.
class DXTextJournalFolder::Part final
{
public:
    explicit Part(const QString &path)
        : m_folder(path)
        , m_lock(::open(QFile::encodeName(m_folder.filePath(u"lock"_qs)).constData(),
                        O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR))
        , m_isOpen(m_lock >= 0)
        , m_isOwned(m_isOpen && ::flock(m_lock, LOCK_EX | LOCK_NB) == 0)
    { }
    ~Part()
    {
        if (m_isOpen)
            ::close(m_lock);
    }

    bool isOpen() const { return m_isOpen; }
    bool isOwned() const { return m_isOwned; }
    const QDir &folder() const { return m_folder; }

private:
    Q_DISABLE_COPY_MOVE(Part)

    const QDir m_folder;
    const int m_lock;
    const bool m_isOpen;
    const bool m_isOwned;
};

DXTextJournalFolder::DXTextJournalFolder() = default;
DXTextJournalFolder::~DXTextJournalFolder() = default;

std::shared_ptr<DXTextJournalFolder> DXTextJournalFolder::open(const QString &folder,
                                                               DXError *error)
{
    std::shared_ptr<DXTextJournalFolder> journal(new DXTextJournalFolder);
    const QDir base(folder);
    for (int number = 0; number < mostParts && !journal->m_part; ++number) {
        const QString path = base.filePath(QString::number(number));
        const bool isMade = makeOwnFolder(folder) && makeOwnFolder(path);
        auto part = isMade ? std::make_unique<Part>(path) : nullptr;
        if (!part || !part->isOpen()) {
            DXError::report(error,
                            failure(QStringLiteral("Texts cannot be kept in \"%1\": %2. Check that "
                                                   "you may write there.")
                                        .arg(path, QString::fromLocal8Bit(std::strerror(errno)))));
            return {};
        }
        if (part->isOwned())
            journal->m_part = std::move(part);
    }
    if (!journal->m_part) {
        DXError::report(error, failure(QStringLiteral("All parts of \"%1\" are in use. End other "
                                                      "running programs.")
                                           .arg(folder)));
        return {};
    }
    for (const QString &other : base.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        journal->takeOver(base.filePath(other));
    journal->readTexts();
    return journal;
}

// Two programs that ended may have had the same text, if a user copied the folder: both stay.
void DXTextJournalFolder::takeOver(const QString &otherPath)
{
    const Part other(otherPath);
    if (!other.isOwned())
        return;
    for (const QString &name : textsIn(other.folder())) {
        QString target = m_part->folder().filePath(name);
        for (int copy = 2; QFile::exists(target); ++copy)
            target = m_part->folder().filePath(name.chopped(suffix.size()) + u'-'
                                               + QString::number(copy) + suffix);
        if (!QFile::rename(other.folder().filePath(name), target))
            m_unreadFiles += other.folder().filePath(name);
    }
}

void DXTextJournalFolder::readTexts()
{
    const QDir &folder = m_part->folder();
    // What was being written when a program was killed.
    for (const QString &name : folder.entryList({u'*' + suffix + u".*"_qs}, QDir::Files))
        QFile::remove(folder.filePath(name));
    for (const QString &name : textsIn(folder)) {
        const QString path = folder.filePath(name);
        QFile file(path);
        auto record = file.open(QFile::ReadOnly) ? decode(file.readAll()) : std::nullopt;
        if (!record) {
            m_unreadFiles += path;
            continue;
        }
        if (path != pathOf(record->id)) {
            record->id = name.chopped(suffix.size());
            QFile::rename(path, pathOf(record->id));
        }
        m_records += *record;
    }
    std::stable_sort(m_records.begin(), m_records.end(),
                     [](const auto &left, const auto &right) { return left.order < right.order; });
}

QString DXTextJournalFolder::pathOf(const QString &id) const
{
    const QByteArray name = QCryptographicHash::hash(id.toUtf8(), QCryptographicHash::Sha1).toHex();
    return m_part->folder().filePath(QLatin1String(name) + suffix);
}

// Of a text whose later version was dealt with, nothing is to be done.
bool DXTextJournalFolder::isLatest(const QString &id, quint64 number)
{
    quint64 &last = m_numbers[id];
    last = std::max(last, number);
    return last == number;
}

QList<DXTextJournalFolder::Version> DXTextJournalFolder::write(const QList<Version> &versions,
                                                               DXError *error)
{
    QList<Version> failed;
    for (const Version &version : versions) {
        const QByteArray bytes = encode(version.record);
        const std::lock_guard lock(m_mutex);
        if (!isLatest(version.record.id, version.number))
            continue;
        QSaveFile file(pathOf(version.record.id));
        if (file.open(QFile::WriteOnly) && file.setPermissions(ownerOnly)
            && file.write(bytes) == bytes.size() && file.commit())
            continue;
        failed += version;
        DXError::report(error, failure(QStringLiteral("The text of \"%1\" could not be kept in "
                                                      "\"%2\": %3. Save it to a file.")
                                           .arg(version.record.title, m_part->folder().path(),
                                                file.errorString())));
    }
    return failed;
}

void DXTextJournalFolder::remove(const QString &id, quint64 number)
{
    const std::lock_guard lock(m_mutex);
    if (isLatest(id, number))
        QFile::remove(pathOf(id));
}
