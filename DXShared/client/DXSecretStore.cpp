// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXSecretStore.h"

#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTimer>

#include <qt6keychain/keychain.h>

using State = DXSecretStore::Answer::State;

namespace
{

QString dataFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
        .filePath(QStringLiteral("dabro"));
}

/// Starts job, which deletes itself, and calls done once: when the job ended, or with null when the
/// service did not answer in time. Its answer may still come, to nobody.
template<typename Job, typename Done>
void start(Job *job, std::chrono::milliseconds patience, const Done &done)
{
    const auto isDone = std::make_shared<bool>(false);
    const auto once = [isDone, done](Job *ended) {
        if (!std::exchange(*isDone, true))
            done(ended);
    };
    QObject::connect(job, &QKeychain::Job::finished, [once, job] { once(job); });
    QTimer::singleShot(patience, [once] { once(nullptr); });
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

} // namespace

DXSecretStore &DXSecretStore::sharedInstance()
{
    static DXSecretStore instance(dataFolder());
    return instance;
}

DXSecretStore::DXSecretStore(const QString &folder, std::chrono::milliseconds patience)
    : m_folder(folder)
    , m_patience(patience)
    , m_file(std::make_shared<DXSealedFile>(folder))
{ }

DXSecretStore::~DXSecretStore() = default;

// The file is asked first: it holds only what the service did not take, which is newer.
void DXSecretStore::read(const QString &key, const std::function<void(const Answer &)> &done)
{
    DX_ASSERT_MAIN();
    DXDispatch::background([this, file = m_file, key, done] {
        DXError error;
        const QString text = file->read(key, &error);
        DXDispatch::main([this, key, text, error, done] {
            if (!text.isNull())
                done({.state = State::Present, .text = text});
            else if (error)
                done({.state = State::Unavailable, .error = error});
            else
                readFromService(key, done);
        });
    });
}

// A locked service says that there is no such entry (Secret Service), so what was stored there is
// remembered outside.
void DXSecretStore::readFromService(const QString &key,
                                    const std::function<void(const Answer &)> &done) const
{
    const bool expected = isInService(key);
    auto *const job = new QKeychain::ReadPasswordJob(DXProductPrefix.chopped(1).toString());
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

void DXSecretStore::write(const QString &key, const QString &text,
                          const std::function<void(const DXError &error)> &done)
{
    DX_ASSERT_MAIN();
    const auto writeFile = [file = m_file, key, done](const QString &content) {
        DXDispatch::background([file, key, content, done] {
            DXError error;
            file->write(key, content, &error);
            DXDispatch::main([error, done] { done(error); });
        });
    };
    const auto finish = [this, key, text, writeFile, done](QKeychain::Job *ended) {
        const bool isTaken = ended && ended->error() == QKeychain::NoError;
        const QString reason =
            ended ? ended->errorString() + u'.' : QStringLiteral("It does not answer.");
        if (!isTaken && text.isNull() && isInService(key)) {
            done(unavailable(reason));
            return;
        }
        if (isTaken)
            setInService(key, !text.isNull());
        else
            DXLog(QStringLiteral("The secret service did not take \"%1\". %2").arg(key, reason));
        writeFile(isTaken ? QString() : text);
    };
    const QString service = DXProductPrefix.chopped(1).toString();
    if (text.isNull()) {
        auto *const job = new QKeychain::DeletePasswordJob(service);
        job->setKey(key);
        start(job, m_patience, finish);
        return;
    }
    auto *const job = new QKeychain::WritePasswordJob(service);
    job->setKey(key);
    job->setTextData(text);
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
