// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// savedConnections FOLDER [save ALIAS PASSWORD | remove ALIAS]…: loads the saved connections from
// the secret store in FOLDER, carries out the commands, and prints what each left, newest first. A
// process of its own, since a session bus belongs to a process.
#include "client/DXSecretStore.h"
#include "client/SQLRecentConnectionList.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresRecentConnection.h"

#include <QCoreApplication>

#include <cstdio>

namespace
{

class Commands final
{
public:
    Commands(SQLRecentConnectionList &list, const QStringList &words)
        : m_list(list)
        , m_words(words)
    { }

    void run(const DXError &error)
    {
        print(error);
        if (m_words.isEmpty()) {
            QCoreApplication::quit();
            return;
        }
        const auto done = [this](const DXError &next) { run(next); };
        const QString command = m_words.takeFirst();
        const QString alias = m_words.takeFirst();
        if (command == QLatin1String("save"))
            m_list.updateRecentConnection(recordFor(alias), done);
        else
            m_list.removeConnection(recordFor(alias), done);
    }

private:
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
        std::fprintf(stderr, "%s\n", qPrintable(error.description()));
    }

    SQLRecentConnectionList &m_list;
    QStringList m_words;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().sliced(1);
    DXSecretStore store(words.takeFirst(), std::chrono::seconds(3));
    SQLRecentConnectionList list({
        .key = u"PostgresRecentConnections"_qs,
        .createRecord = [] { return std::make_shared<PostgresRecentConnection>(); },
        .store = store,
    });
    Commands commands(list, words);
    list.load([&](const DXError &error) { commands.run(error); });
    const int status = QCoreApplication::exec();
    DXDispatch::shutdown();
    return status;
}
