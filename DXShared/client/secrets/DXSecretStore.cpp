// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/secrets/DXSecretStore.h"

#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTimer>

#include <qt6keychain/keychain.h>

#include <cerrno>
#include <cstring>
#include <deque>
#include <mutex>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using State = DXSecretStore::Answer::State;

namespace
{

QString dataFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
        .filePath(QStringLiteral("dabro"));
}

/// Starts job, which deletes itself, and calls done once: when the job ended, or with null when the
/// service did not answer in time. Its answer may still come, to nobody; done is kept until then.
template<typename Job, typename Done>
void start(Job *job, std::chrono::milliseconds patience, const Done &done)
{
    const auto isDone = std::make_shared<bool>(false);
    const auto once = [isDone, done](Job *ended) {
        if (!std::exchange(*isDone, true))
            done(ended);
    };
    QObject::connect(job, &QKeychain::Job::finished, [once, job] { once(job); });
    auto *const timer = new QTimer(job);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, job, [once] { once(nullptr); });
    timer->start(patience);
    job->setInsecureFallback(false);
    job->start();
}

QString serviceName()
{
    return DXProductPrefix.chopped(1).toString();
}

// Of something that is empty already.
void deleteInService(const QString &key)
{
    auto *const job = new QKeychain::DeletePasswordJob(serviceName());
    job->setKey(key);
    job->setInsecureFallback(false);
    job->start();
}

DXError unavailable(const QString &reason)
{
    return {DXProductName(u"secretStore"), 0,
            QStringLiteral("The saved connections are in the desktop's secret service, which does "
                           "not hand them out: %1 Unlock it and try again.")
                .arg(reason)};
}

// The system takes it away when the program ends, however it ends.
class FileLock final
{
public:
    explicit FileLock(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                        S_IRUSR | S_IWUSR))
        , m_error(m_file < 0 || ::flock(m_file, LOCK_EX | LOCK_NB) != 0 ? errno : 0)
    { }
    ~FileLock()
    {
        if (m_file >= 0)
            ::close(m_file);
    }

    /// 0 for none.
    int error() const { return m_error; }

private:
    Q_DISABLE_COPY_MOVE(FileLock)

    const int m_file;
    const int m_error;
};

using Locked = std::function<void(const DXSecretStore::Lock &lock, const DXError &error)>;

// [background]
void tryLock(const QString &folder, std::chrono::steady_clock::time_point until, const Locked &done)
{
    constexpr std::chrono::milliseconds pause(50);
    QDir().mkpath(folder);
    const QString path = QDir(folder).filePath(QStringLiteral("secrets.turn"));
    const auto lock = std::make_shared<FileLock>(path);
    const int failed = lock->error();
    if (failed == 0) {
        DXDispatch::main([lock, done] { done(lock, {}); });
    } else if (failed == EWOULDBLOCK && std::chrono::steady_clock::now() < until) {
        DXDispatch::backgroundAfter(pause, [folder, until, done] { tryLock(folder, until, done); });
    } else {
        const QString reason = failed == EWOULDBLOCK
                                   ? QStringLiteral("another program keeps it.")
                                   : QString::fromLocal8Bit(std::strerror(failed));
        const DXError error(
            DXProductName(u"secretStore"), failed,
            QStringLiteral("The file \"%1\" could not be locked: %2").arg(path, reason));
        DXDispatch::main([error, done] { done(nullptr, error); });
    }
}

} // namespace

// What is done with the sealed file, one thing after the other in the order asked for, by whoever
// comes first: the threads of the background queue, or the end of the program.
class DXSecretStore::FileWork final : public std::enable_shared_from_this<FileWork>
{
public:
    void add(DXDispatch::Work work)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_waiting.push_back(std::move(work));
        }
        DXDispatch::background([self = shared_from_this()] { self->next(); });
    }
    /// False when there is nothing to do.
    bool next()
    {
        const std::lock_guard turn(m_turn);
        DXDispatch::Work work;
        {
            const std::lock_guard lock(m_mutex);
            if (m_waiting.empty())
                return false;
            work = std::move(m_waiting.front());
            m_waiting.pop_front();
        }
        work();
        return true;
    }

private:
    std::mutex m_turn;
    std::mutex m_mutex;
    std::deque<DXDispatch::Work> m_waiting;
};

DXSecretStore &DXSecretStore::sharedInstance()
{
    static DXSecretStore instance(dataFolder());
    return instance;
}

DXSecretStore::DXSecretStore(const QString &folder, std::chrono::milliseconds patience)
    : m_folder(folder)
    , m_patience(patience)
    , m_file(std::make_shared<DXSealedFile>(folder))
    , m_work(std::make_shared<FileWork>())
{ }

DXSecretStore::~DXSecretStore() = default;

void DXSecretStore::finish()
{
    DX_ASSERT_MAIN();
    while (m_work->next()) { }
}

void DXSecretStore::lock(const Locked &done)
{
    DX_ASSERT_MAIN();
    const auto until = std::chrono::steady_clock::now() + m_patience;
    DXDispatch::background([folder = m_folder, until, done] { tryLock(folder, until, done); });
}

void DXSecretStore::readSealed(const QString &key, const std::function<void(const Answer &)> &done)
{
    DX_ASSERT_MAIN();
    m_work->add([file = m_file, key, done] {
        Answer answer;
        answer.text = file->read(key, &answer.error);
        answer.state = answer.error           ? State::Unavailable
                       : answer.text.isNull() ? State::Absent
                                              : State::Present;
        DXDispatch::main([answer, done] { done(answer); });
    });
}

void DXSecretStore::changeSealed(const QString &key, const DXSealedFile::Change &change,
                                 const Done &done)
{
    DX_ASSERT_MAIN();
    m_work->add([file = m_file, key, change, done] {
        DXError error;
        file->update(key, change, &error);
        DXDispatch::main([error, done] { done(error); });
    });
}

// The file is asked first: it holds only what the service did not take, which is newer.
void DXSecretStore::read(const QString &key, const std::function<void(const Answer &)> &done)
{
    readSealed(key, [this, key, done](const Answer &answer) {
        if (answer.state == State::Absent)
            readFromService(key, done);
        else
            done(answer);
    });
}

// A locked service says that there is no such entry (Secret Service), so what was stored there is
// remembered outside.
void DXSecretStore::readFromService(const QString &key,
                                    const std::function<void(const Answer &)> &done) const
{
    const bool expected = isInService(key);
    auto *const job = new QKeychain::ReadPasswordJob(serviceName());
    job->setKey(key);
    start(job, m_patience, [this, key, expected, done](QKeychain::ReadPasswordJob *ended) {
        if (ended && ended->error() == QKeychain::NoError) {
            setInService(key, true);
            done({.state = State::Present, .text = ended->textData()});
        } else if (expected) {
            done({.state = State::Unavailable,
                  .error = unavailable(ended ? ended->errorString() + u'.'
                                             : QStringLiteral("It does not answer."))});
        } else {
            done({.state = State::Absent});
        }
    });
}

void DXSecretStore::write(const QString &key, const QString &text, const Done &done)
{
    DX_ASSERT_MAIN();
    const quint64 number = ++m_writes[key];
    const auto finish = [this, key, text, number, done](QKeychain::Job *ended) {
        const bool isTaken = ended && ended->error() == QKeychain::NoError;
        const QString reason =
            ended ? ended->errorString() + u'.' : QStringLiteral("It does not answer.");
        if (!isTaken && text.isNull() && isInService(key)) {
            done(unavailable(reason));
            return;
        }
        if (isTaken)
            setInService(key, !text.isNull());
        if (isTaken && text.isNull())
            deleteInService(key);
        if (!isTaken)
            DXLog(QStringLiteral("The secret service did not take \"%1\". %2").arg(key, reason));
        // The service may take longer to refuse than to refuse what came after.
        if (m_writes.value(key) != number) {
            done({});
            return;
        }
        m_work->add([file = m_file, key, content = isTaken ? QString() : text, done] {
            DXError error;
            file->write(key, content, &error);
            DXDispatch::main([error, done] { done(error); });
        });
    };
    // A locked service claims to have deleted what it keeps, but does not claim to have written.
    auto *const job = new QKeychain::WritePasswordJob(serviceName());
    job->setKey(key);
    job->setTextData(text.isNull() ? QStringLiteral("") : text);
    start(job, m_patience, finish);
}

// An empty file for each key that the service holds; its name tells nothing.
QString DXSecretStore::markOf(const QString &key) const
{
    const QByteArray name =
        QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex().first(16);
    return QDir(m_folder).filePath(QStringLiteral("in-service-") + QString::fromLatin1(name));
}

bool DXSecretStore::isInService(const QString &key) const
{
    return QFile::exists(markOf(key));
}

void DXSecretStore::setInService(const QString &key, bool isThere) const
{
    QFile mark(markOf(key));
    if (isThere == mark.exists())
        return;
    if (!isThere)
        mark.remove();
    else if (!QDir().mkpath(m_folder) || !mark.open(QFile::WriteOnly))
        DXLog(QStringLiteral("The file \"%1\" could not be made.").arg(mark.fileName()));
}
