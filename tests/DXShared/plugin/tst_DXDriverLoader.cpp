// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/DXDriverLoader.h"

#include "plugin/DXDriverPlugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

QString builtPlugin(const QString &name)
{
    return QStringLiteral(DX_TEST_PLUGIN_FOLDER "/") + name + u".so"_qs;
}

bool wasLoaded(const char *name)
{
    return qEnvironmentVariableIsSet(QByteArray("DABRO_TEST_LOADED_").append(name));
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

class DXDriverLoaderTest : public Test
{
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void install(const QString &plugin, const QString &name = {})
    {
        ASSERT_TRUE(
            QFile::copy(builtPlugin(plugin), path(name.isEmpty() ? plugin + u".so"_qs : name)));
    }
    void write(const QString &name, const QByteArray &contents)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(contents), contents.size());
    }
    DXDriverLoader::Report load() const { return DXDriverLoader::load({m_folder.path()}); }
    static QString reasonFor(const DXDriverLoader::Report &report, const QString &name)
    {
        for (const auto &refusal : report.refusals) {
            if (refusal.path.endsWith(u'/' + name))
                return refusal.reason;
        }
        return {};
    }

    QTemporaryDir m_folder;
};

TEST_F(DXDriverLoaderTest, LoadsDriversAndAnswersWithWhatTheySay)
{
    install(u"OtherDriver"_qs);
    install(u"GoodDriver"_qs);
    const auto report = load();
    ASSERT_THAT(report.drivers, SizeIs(2));
    EXPECT_THAT(report.refusals, IsEmpty());
    const DXDriverLoader::Driver &good = report.drivers.at(0);
    EXPECT_EQ(good.metadata.identifier, u"org.dabro.good"_qs);
    EXPECT_EQ(good.metadata.displayName, u"GoodDriver"_qs);
    EXPECT_EQ(good.metadata.version, u"1.2.3"_qs);
    EXPECT_EQ(good.metadata.interfaceVersion, DXDriverMetadata::hostInterfaceVersion);
    EXPECT_EQ(good.path, QFileInfo(path(u"GoodDriver.so"_qs)).canonicalFilePath());
    DXError error;
    EXPECT_EQ(good.plugin->connectionDetailsFromString({}, &error), nullptr);
    EXPECT_EQ(error.description(), u"GoodDriver was asked"_qs);
    EXPECT_EQ(report.driverForScheme(u"OTHERDB"_qs), &report.drivers.at(1));
    EXPECT_EQ(report.driverForScheme(u"nothing"_qs), nullptr);
}

TEST_F(DXDriverLoaderTest, RunsNoCodeOfPluginsThatDoNotFitAndSaysWhy)
{
    const QList<std::pair<QString, QString>> cases{
        {u"NewerDriver"_qs,
         u"It was built for version 1000 of the driver interface, and this program "
         "has version 1: install a newer program."_qs},
        {u"ForeignPlugin"_qs,
         u"It is a plugin of another kind (\"org.example.Codec\"), not a driver."_qs},
        {u"DebugDriver"_qs, u"It is a debug build, and this program is a release build."_qs},
        {u"VagueDriver"_qs,
         u"Its description lacks \"schemes\", which must be a list of texts."_qs}};
    for (const auto &[plugin, reason] : cases)
        install(plugin);
    install(u"GoodDriver"_qs);
    const auto report = load();
    ASSERT_THAT(report.drivers, SizeIs(1));
    EXPECT_THAT(report.refusals, SizeIs(cases.size()));
    for (const auto &[plugin, reason] : cases) {
        EXPECT_EQ(reasonFor(report, plugin + u".so"_qs), reason);
        EXPECT_FALSE(wasLoaded(plugin.toLatin1())) << plugin.toStdString();
    }
    // The trace works: it is there for what was loaded.
    EXPECT_TRUE(wasLoaded("GoodDriver"));
}

TEST_F(DXDriverLoaderTest, SecondDriverOfTheSameIdentifierIsNotLoaded)
{
    install(u"GoodDriver"_qs, u"a.so"_qs);
    install(u"GoodDriver"_qs, u"b.so"_qs);
    const auto report = load();
    ASSERT_THAT(report.drivers, SizeIs(1));
    EXPECT_TRUE(report.drivers.at(0).path.endsWith(u"/a.so"_qs));
    EXPECT_THAT(reasonFor(report, u"b.so"_qs).toStdString(), HasSubstr("loaded from"));
}

TEST_F(DXDriverLoaderTest, FolderNamedTwiceIsReadOnce)
{
    install(u"GoodDriver"_qs);
    const QString link = path(u"link"_qs);
    ASSERT_TRUE(QFile::link(m_folder.path(), link));
    const auto report = DXDriverLoader::load({m_folder.path(), path(u"absent"_qs), link});
    EXPECT_THAT(report.drivers, SizeIs(1));
    EXPECT_THAT(report.refusals, IsEmpty());
}

TEST_F(DXDriverLoaderTest, FilesThatAreNoPluginsAreReported)
{
    write(u"text.so"_qs, "#!/bin/sh\necho no\n");
    write(u"empty.so"_qs, {});
    ASSERT_TRUE(QFile::link(path(u"nowhere"_qs), path(u"dangling.so"_qs)));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe.so"_qs)), 0600), 0);
    ASSERT_TRUE(QFile::copy(QStringLiteral(DX_TEST_LIBRARY), path(u"library.so"_qs)));
    QByteArray garbled = contentsOf(builtPlugin(u"GoodDriver"_qs));
    const qsizetype metadata = garbled.indexOf(DXDriverPlugin_iid);
    ASSERT_GE(metadata, 2);
    garbled.replace(metadata - 2, 8, QByteArray(8, '\xff'));
    write(u"garbled.so"_qs, garbled);
    install(u"OtherDriver"_qs);
    const auto report = load();
    EXPECT_THAT(report.drivers, SizeIs(1));
    EXPECT_EQ(reasonFor(report, u"text.so"_qs), u"It is not a shared library."_qs);
    EXPECT_EQ(reasonFor(report, u"empty.so"_qs), u"It is not a shared library."_qs);
    EXPECT_EQ(reasonFor(report, u"dangling.so"_qs),
              u"It is a link to a file that does not exist."_qs);
    EXPECT_EQ(reasonFor(report, u"pipe.so"_qs), u"It is not a regular file."_qs);
    EXPECT_THAT(reasonFor(report, u"library.so"_qs).toStdString(), HasSubstr("It is no plugin"));
    EXPECT_THAT(reasonFor(report, u"garbled.so"_qs).toStdString(), HasSubstr("It is no plugin"));
}

TEST_F(DXDriverLoaderTest, TruncatedPluginsAreReportedWhereverTheyEnd)
{
    const QByteArray whole = contentsOf(builtPlugin(u"GoodDriver"_qs));
    constexpr int pieces = 32;
    for (int i = 1; i < pieces; ++i)
        write(QString::number(i) + u".so"_qs, whole.first(whole.size() * i / pieces));
    const auto report = load();
    EXPECT_THAT(report.drivers, IsEmpty());
    EXPECT_THAT(report.refusals, SizeIs(pieces - 1));
    EXPECT_EQ(reasonFor(report, u"16.so"_qs), u"It is not complete: install it again."_qs);
}

TEST_F(DXDriverLoaderTest, UnreadablePluginIsReported)
{
    install(u"GoodDriver"_qs);
    ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path()), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"GoodDriver.so"_qs)), 0), 0);
    // The superuser reads everything: be somebody else meanwhile.
    const uid_t user = ::geteuid();
    ASSERT_TRUE(user != 0 || ::seteuid(65534) == 0);
    const auto back = qScopeGuard([user] { EXPECT_EQ(::seteuid(user), 0); });
    EXPECT_THAT(reasonFor(load(), u"GoodDriver.so"_qs).toStdString(), HasSubstr("cannot be read"));
}

TEST_F(DXDriverLoaderTest, PluginsThatFailWhileLoadingAreReported)
{
    install(u"TornDriver"_qs);
    install(u"ThrowingDriver"_qs);
    install(u"GoodDriver"_qs);
    const auto report = load();
    EXPECT_THAT(report.drivers, SizeIs(1));
    EXPECT_THAT(reasonFor(report, u"TornDriver.so"_qs).toStdString(),
                HasSubstr("functionOfANewerHost"));
    EXPECT_EQ(reasonFor(report, u"ThrowingDriver.so"_qs),
              u"It failed when it was started: no licence"_qs);
}

TEST_F(DXDriverLoaderTest, FolderThatEverybodyMayWriteToIsTrustedOnlyWhenNamed)
{
    install(u"GoodDriver"_qs);
    ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path()), 0777), 0);
    const auto report = load();
    EXPECT_THAT(report.drivers, IsEmpty());
    ASSERT_THAT(report.refusals, SizeIs(1));
    EXPECT_EQ(report.refusals.at(0).path, m_folder.path());

    qputenv("DABRO_DRIVER_PATH", QFile::encodeName(u".::relative:"_qs + m_folder.path()));
    const auto unset = qScopeGuard([] { qunsetenv("DABRO_DRIVER_PATH"); });
    EXPECT_THAT(load().drivers, SizeIs(1));
    const QStringList folders = DXDriverLoader::searchPath();
    EXPECT_EQ(folders.first(), m_folder.path());
    EXPECT_THAT(folders, Each(ResultOf(&QDir::isAbsolutePath, IsTrue())));
    EXPECT_TRUE(folders.contains(
        QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../lib/drivers"_qs)));
}

} // namespace
