// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXDBCTabColorHelper.h"
#include "driver/PostgresConnectionHelper.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresRecentConnection.h"
#include "support/DXWait.h"
#include "support/Program.h"
#include "support/SavedConnections.h"

#include <QCborArray>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace
{

/// A home for the program that keeps connections, and what it prints in it.
class SavedConnections : public testing::Test
{
protected:
    /// Runs a shell script in which $saved is the program on this test's store; its lines.
    QStringList run(const QString &script, const QString &bus = u"unix:path=/nowhere"_qs)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_qs, m_home.path());
        environment.insert(u"XDG_RUNTIME_DIR"_qs, m_home.path());
        environment.insert(u"XDG_DATA_HOME"_qs, m_home.filePath(u"share"_qs));
        environment.insert(u"XDG_CURRENT_DESKTOP"_qs, u"GNOME"_qs);
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_qs, bus);
        environment.insert(u"saved"_qs, QStringLiteral(DX_SAVED_CONNECTIONS) + u' ' + folder());
        const Program program(
            {.program = u"bash"_qs, .arguments = {u"-c"_qs, script}, .environment = environment});
        EXPECT_TRUE(program.succeeded()) << qPrintable(program.failure());
        return QString::fromUtf8(program.output()).split(u'\n', Qt::SkipEmptyParts);
    }

    /// As run(), on a bus of its own with a keyring on it, unlocked when there is a password for
    /// it.
    QStringList runWithKeyring(const QString &password, const QString &commands)
    {
        const QString script = u"gnome-keyring-daemon --foreground --components=secrets "
                               "$( [ -z \"$password\" ] || echo --unlock) "
                               "<<<\"$password\" >/dev/null 2>&1 & "
                               "until dbus-send --print-reply --dest=org.freedesktop.DBus / "
                               "org.freedesktop.DBus.NameHasOwner "
                               "string:org.freedesktop.secrets | grep -q true; "
                               "do sleep 0.02; done; "_qs
                               + commands + u"; kill $!; wait"_qs;
        return run(u"password='"_qs + password + u"' timeout 60 dbus-run-session -- bash -c '"_qs
                   + QString(script).replace(u'\'', u"'\\''"_qs) + u'\'');
    }

    QString folder() const { return m_home.filePath(u"store"_qs); }
    QByteArray sealed() const
    {
        QFile file(QDir(folder()).filePath(u"secrets"_qs));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_home;
};

TEST_F(SavedConnections, areSealedInAFileWhereThereIsNoService)
{
    EXPECT_EQ(run(u"$saved save a one save b two save a"_qs),
              (QStringList{u"[]"_qs, u"[a=one]"_qs, u"[b=two a=one]"_qs, u"[a=one b=two]"_qs}));
    EXPECT_EQ(run(u"$saved remove b"_qs), (QStringList{u"[a=one b=two]"_qs, u"[a=one]"_qs}));
    const QDir store(folder());
    for (const QString &name : {u"secrets"_qs, u"secrets.key"_qs})
        EXPECT_EQ(QFileInfo(store.filePath(name)).permissions() & 0x77, QFile::Permissions())
            << qPrintable(name);
    EXPECT_FALSE(sealed().isEmpty());
    EXPECT_FALSE(sealed().contains("one"));
}

TEST_F(SavedConnections, areNeverReplacedWhenTheyCannotBeRead)
{
    run(u"$saved save a one"_qs);
    const QByteArray before = sealed();
    QFile key(QDir(folder()).filePath(u"secrets.key"_qs));
    ASSERT_TRUE(key.rename(key.fileName() + u".away"_qs));
    EXPECT_EQ(run(u"$saved save b two"_qs),
              (QStringList{u"[] unavailable"_qs, u"[b=two] unavailable"_qs}));
    EXPECT_EQ(sealed(), before);
    ASSERT_TRUE(key.rename(QDir(folder()).filePath(u"secrets.key"_qs)));
    EXPECT_EQ(run(u"$saved"_qs), QStringList{u"[a=one]"_qs});
}

TEST_F(SavedConnections, surviveAKeyringThatIsLocked)
{
    EXPECT_EQ(runWithKeyring(u"secret"_qs, u"$saved save a one settle; $saved"_qs),
              (QStringList{u"[]"_qs, u"[a=one]"_qs, u"[a=one]"_qs}));
    EXPECT_TRUE(sealed().isEmpty());
    EXPECT_EQ(runWithKeyring(QString(), u"$saved save b two; $saved"_qs),
              (QStringList{u"[] unavailable"_qs, u"[b=two]"_qs, u"[b=two] unavailable"_qs}));
    EXPECT_EQ(runWithKeyring(u"secret"_qs, u"$saved settle; $saved"_qs),
              (QStringList{u"[b=two a=one]"_qs, u"[b=two a=one]"_qs}));
    EXPECT_TRUE(sealed().isEmpty());
    // What is removed meanwhile does not come back.
    EXPECT_EQ(runWithKeyring(QString(), u"$saved save b two remove b"_qs),
              (QStringList{u"[] unavailable"_qs, u"[b=two]"_qs, u"[]"_qs}));
    EXPECT_EQ(runWithKeyring(u"secret"_qs, u"$saved; $saved"_qs),
              (QStringList{u"[a=one]"_qs, u"[a=one]"_qs}));
}

TEST_F(SavedConnections, areClearedAltogetherOrNotAtAll)
{
    runWithKeyring(u"secret"_qs, u"$saved save a one settle"_qs);
    EXPECT_EQ(runWithKeyring(QString(), u"$saved clear save b two"_qs),
              (QStringList{u"[] unavailable"_qs, u"[] unavailable"_qs, u"[b=two]"_qs}));
    EXPECT_EQ(runWithKeyring(u"secret"_qs, u"$saved clear; $saved"_qs),
              (QStringList{u"[b=two a=one]"_qs, u"[]"_qs, u"[]"_qs}));
    EXPECT_TRUE(sealed().isEmpty());
}

TEST_F(SavedConnections, doNotWaitForAServiceThatSaysNothing)
{
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder() + u".bus"_qs));
    EXPECT_EQ(run(u"$saved save a one"_qs, u"unix:path="_qs + silent.fullServerName()),
              (QStringList{u"[]"_qs, u"[a=one]"_qs}));
}

TEST_F(SavedConnections, areSafeWhenTheProgramEndsAtOnce)
{
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder() + u".bus"_qs));
    EXPECT_EQ(run(u"$saved save a one quit; $saved"_qs, u"unix:path="_qs + silent.fullServerName()),
              (QStringList{u"[]"_qs, u"[a=one]"_qs}));
    EXPECT_EQ(run(u"$saved remove a quit; $saved"_qs), (QStringList{u"[a=one]"_qs, u"[]"_qs}));
    // The service took it just before.
    EXPECT_EQ(runWithKeyring(u"secret"_qs, u"$saved save b two settle remove b quit; $saved"_qs),
              (QStringList{u"[]"_qs, u"[b=two]"_qs, u"[]"_qs}));
}

// One program starts before, and saves after, two others that come and go.
const QString manyPrograms =
    u"$saved save a one settle run \"$saved save x two save b three settle\" save c four "
    "settle run \"$saved remove x remove a settle\" save b; $saved"_qs;
const QStringList whatManyProgramsPrint{u"[]"_qs,
                                        u"[a=one]"_qs,
                                        u"[a=one]"_qs,
                                        u"[x=two a=one]"_qs,
                                        u"[b=three x=two a=one]"_qs,
                                        u"[c=four a=one]"_qs,
                                        u"[c=four b=three x=two a=one]"_qs,
                                        u"[c=four b=three a=one]"_qs,
                                        u"[c=four b=three]"_qs};

TEST_F(SavedConnections, areThoseOfAllProgramsThatRun)
{
    QStringList lines = run(manyPrograms);
    EXPECT_EQ(lines.takeLast(), u"[b=three c=four]"_qs);
    EXPECT_EQ(lines.first(whatManyProgramsPrint.size()), whatManyProgramsPrint);
    EXPECT_EQ(run(u"for name in a b c d; do $saved save 1$name x save 2$name x remove 1$name & "
                  "done >/dev/null; wait; $saved | tr ' ' '\\n' | grep -c '[12].=x'"_qs),
              QStringList{u"4"_qs});
}

TEST_F(SavedConnections, areThoseOfAllProgramsThatShareAKeyring)
{
    QStringList lines = runWithKeyring(u"secret"_qs, manyPrograms);
    EXPECT_EQ(lines.takeLast(), u"[b=three c=four]"_qs);
    EXPECT_EQ(lines.first(whatManyProgramsPrint.size()), whatManyProgramsPrint);
}

TEST(PostgresRecentConnection, isUpdatedAndRemovedByItsId)
{
    const QTemporaryDir folder;
    auto &list = ::SavedConnections::listOf<PostgresRecentConnection>(
        u"key"_qs, ::SavedConnections::storeIn(folder.path()));
    int done = 0;
    const auto count = [&done](const DXError &) { ++done; };
    const auto recordCalled = [](const QString &alias, const QString &id) {
        auto record = std::make_shared<PostgresRecentConnection>();
        record->setConnectionId(id);
        record->setAlias(alias);
        return record;
    };
    const auto stored = recordCalled(u"old"_qs, u"id"_qs);
    list.updateRecentConnection(stored, count);
    // The computer's clock was ahead then.
    stored->setConnectionDate(QDateTime::currentDateTimeUtc().addDays(1));
    const auto edited = recordCalled(u"new"_qs, u"ID"_qs);
    list.updateRecentConnection(edited, count);
    ASSERT_EQ(list.recentConnections().size(), 1);
    EXPECT_EQ(list.recentConnections()[0]->alias(), u"new"_qs);
    list.removeConnection(edited, count);
    EXPECT_TRUE(list.recentConnections().isEmpty());
    EXPECT_TRUE(DXWait::until([&done] { return done == 3; }));
    EXPECT_TRUE(::SavedConnections::areStored(folder.path(), u"key"_qs));
}

TEST(PostgresRecentConnection, staysRemovedWhenItWasSavedDuringALoad)
{
    const QTemporaryDir folder;
    auto &store = ::SavedConnections::storeIn(folder.path());
    auto &list = ::SavedConnections::listOf<PostgresRecentConnection>(u"key"_qs, store);
    int done = 0;
    const auto count = [&done](const DXError &) { ++done; };
    const auto record = std::make_shared<PostgresRecentConnection>();
    list.load(count);
    list.updateRecentConnection(record, count);
    ASSERT_TRUE(DXWait::until([&done] { return done == 2; }));
    list.removeConnection(record, count);
    ASSERT_TRUE(DXWait::until([&done] { return done == 3; }));
    EXPECT_TRUE(::SavedConnections::areStored(folder.path(), u"key"_qs));
    auto &later = ::SavedConnections::listOf<PostgresRecentConnection>(u"key"_qs, store);
    later.load(count);
    ASSERT_TRUE(DXWait::until([&done] { return done == 4; }));
    EXPECT_TRUE(later.recentConnections().isEmpty());
}

TEST(PostgresRecentConnection, keepsTheIdThatItIsGiven)
{
    const QTemporaryDir folder;
    auto &store = ::SavedConnections::storeIn(folder.path());
    QCborMap archive = PostgresRecentConnection().encode();
    archive.remove(QLatin1String("connectionId"));
    int done = 0;
    const auto count = [&done](const DXError &) { ++done; };
    const QString text = QString::fromLatin1(QCborValue(QCborArray{archive}).toCbor().toBase64());
    store.write(u"key"_qs, text, count);
    ASSERT_TRUE(DXWait::until([&done] { return done == 1; }));
    auto &list = ::SavedConnections::listOf<PostgresRecentConnection>(u"key"_qs, store);
    list.load(count);
    ASSERT_TRUE(DXWait::until([&done] { return done == 2; }));
    const QString id = list.recentConnections().at(0)->connectionId();
    EXPECT_FALSE(id.isEmpty());
    const DXSealedFile file(folder.path());
    EXPECT_TRUE(DXWait::until([&] { return file.read(u"key"_qs, nullptr) != text; }));
    auto &later = ::SavedConnections::listOf<PostgresRecentConnection>(u"key"_qs, store);
    later.load(count);
    ASSERT_TRUE(DXWait::until([&done] { return done == 3; }));
    EXPECT_EQ(later.recentConnections().at(0)->connectionId(), id);
    EXPECT_EQ(list.recentConnections().at(0)->connectionId(), id);
}

TEST(PostgresRecentConnection, archivesEverythingButUnwantedPasswords)
{
    PostgresRecentConnection record;
    record.setConnectionId(u"id"_qs);
    record.setServerHost(u"db1"_qs);
    record.setServerPort(5433);
    record.setDatabase(u""_qs);
    record.setPassword(u"secret"_qs);
    record.setRememberPassword(true);
    record.setGroupSchemas(true);
    record.setConnectionSessionParameters({{u"TimeZone"_qs, u"UTC"_qs}});
    record.setSshTunnelDetails(
        std::make_shared<DXSSHTunnelModel>(DXSSHTunnelModel{.host = u"hop"_qs}));
    record.setSslDetails(std::make_shared<PostgresSSLDetails>());
    record.sslDetails()->setSslMode(u"verify-full"_qs);
    EXPECT_FALSE(record.encode().contains(QLatin1String("connectionParameters")));
    record.setConnectionParameters({{u"connect_timeout"_qs, u"10"_qs}});

    PostgresRecentConnection read;
    read.decode(record.encode());
    const auto details = std::static_pointer_cast<PostgresDatabaseConnectionDetails>(
        read.createDatabaseConnectionDetails());
    EXPECT_EQ(details->host(), u"db1"_qs);
    EXPECT_EQ(details->port(), 5433);
    EXPECT_FALSE(details->database().isNull());
    EXPECT_TRUE(details->username().isNull());
    EXPECT_EQ(details->password(), u"secret"_qs);
    EXPECT_EQ(details->connectionSessionPreferences().value(u"TimeZone"_qs), u"UTC"_qs);
    EXPECT_EQ(details->connectionParameters().value(u"connect_timeout"_qs), u"10"_qs);
    EXPECT_EQ(details->sshTunnelModel()->host, u"hop"_qs);
    EXPECT_EQ(details->sslDetails()->sslMode(), u"verify-full"_qs);

    QCborMap archive = record.encode();
    archive.insert(QLatin1String("rememberPassword"), false);
    archive.remove(QLatin1String("connectionId"));
    read.decode(archive);
    EXPECT_TRUE(read.password().isEmpty() && !read.password().isNull());
    EXPECT_FALSE(read.connectionId().isEmpty());
    EXPECT_TRUE(read.groupSchemas());
    read.didLoad();
    EXPECT_TRUE(PostgresConnectionHelper::sharedInstance().groupBySchemaForId(read.connectionId()));
    record.setRememberPassword(false);
    EXPECT_EQ(record.encode().value(QLatin1String("password")).toString(), QString());
}

TEST(DXDBCTabColorHelper, keepsRedForProduction)
{
    const QString red = DXDBCTabColorHelper::colorForAlias(u"prod"_qs);
    for (const QString &alias : {u"Shop production"_qs, u"shop-PROD-2"_qs, u"live"_qs})
        EXPECT_EQ(DXDBCTabColorHelper::colorForAlias(alias), red) << qPrintable(alias);
    for (const QString &alias : {u"products"_qs, u"delivery"_qs, u"test"_qs, u"Ätna"_qs})
        EXPECT_NE(DXDBCTabColorHelper::colorForAlias(alias), red) << qPrintable(alias);
    EXPECT_EQ(DXDBCTabColorHelper::colorForAlias(u"Test"_qs),
              DXDBCTabColorHelper::colorForAlias(u"test"_qs));
    EXPECT_TRUE(DXDBCTabColorHelper::colorForAlias(QString()).isNull());
}

} // namespace
