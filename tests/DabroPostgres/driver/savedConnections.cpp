// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// savedConnections FOLDER COMMAND…: loads the saved connections from the secret store in FOLDER,
// carries out the commands, and prints what each left, newest first. A process of its own, since a
// session bus belongs to a process. The commands:
//
//   save ALIAS [PASSWORD]  with the password of a new connection
//   remove ALIAS
//   clear                  removes all
//   run SCRIPT             waits for a shell, and prints nothing itself
//   settle                 waits until no change is pending, prints nothing
//   quit                   with the command before it still under way
#include "client/SQLRecentConnectionList.h"
#include "client/secrets/DXSecretStore.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresRecentConnection.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>

#include <cstdio>

namespace
{

const QString key = u"PostgresRecentConnections"_qs;

class Commands final
{
public:
    Commands(SQLRecentConnectionList &list, const QString &folder, const QStringList &words)
        : m_list(list)
        , m_sealedFile(folder)
        , m_words(words)
    { }

    void run(const DXError &error)
    {
        print(error);
        next();
    }

private:
    void next()
    {
        if (m_words.isEmpty()) {
            QCoreApplication::quit();
            return;
        }
        const QString command = m_words.takeFirst();
        if (command == QLatin1String("run")) {
            runScript(m_words.takeFirst());
        } else if (command == QLatin1String("settle")) {
            settle();
        } else if (command == QLatin1String("clear")) {
            m_list.removeAllRecentConnections([this](const DXError &error) { run(error); });
        } else {
            change(command, m_words.takeFirst());
            if (m_words.value(0) == QLatin1String("quit"))
                QCoreApplication::quit();
        }
    }

    void change(const QString &command, const QString &alias)
    {
        const auto done = [this](const DXError &error) { run(error); };
        if (command == QLatin1String("save"))
            m_list.updateRecentConnection(recordFor(alias), done);
        else
            m_list.removeConnection(recordFor(alias), done);
    }

    void runScript(const QString &script)
    {
        auto *const process = new QProcess(QCoreApplication::instance());
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        QObject::connect(process, &QProcess::finished, process, [this] { next(); });
        process->start(u"bash"_qs, {u"-c"_qs, script});
    }

    void settle()
    {
        constexpr std::chrono::milliseconds pause(10);
        if (!m_sealedFile.read(key + u".pending"_qs, nullptr).isNull())
            QTimer::singleShot(pause, QCoreApplication::instance(), [this] { settle(); });
        else
            next();
    }

    SQLRecentConnectionList::Record recordFor(const QString &alias)
    {
        const auto records = m_list.recentConnections();
        for (const auto &record : records) {
            if (record->alias() == alias)
                return record;
        }
        auto record = std::make_shared<PostgresRecentConnection>();
        record->setConnectionId(u"id of "_qs + alias);
        record->setAlias(alias);
        record->setRememberPassword(true);
        record->setPassword(m_words.takeFirst());
        return record;
    }

    void print(const DXError &error) const
    {
        QStringList shown;
        const auto records = m_list.recentConnections();
        for (const auto &record : records)
            shown.append(record->alias() + u'=' + record->password());
        std::printf("[%s]%s\n", qPrintable(shown.join(u' ')), error ? " unavailable" : "");
        std::fflush(stdout);
        std::fprintf(stderr, "%s\n", qPrintable(error.description()));
    }

    SQLRecentConnectionList &m_list;
    const DXSealedFile m_sealedFile;
    QStringList m_words;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().sliced(1);
    const QString folder = words.takeFirst();
    DXSecretStore store(folder, std::chrono::seconds(3));
    SQLRecentConnectionList list({
        .key = key,
        .createRecord = [] { return std::make_shared<PostgresRecentConnection>(); },
        .store = store,
    });
    Commands commands(list, folder, words);
    list.load([&](const DXError &error) { commands.run(error); });
    const int status = QCoreApplication::exec();
    store.finish();
    DXDispatch::shutdown();
    return status;
}
