// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/connection/ConnectionDialog.h"
#include "support/PrintQt.h"
#include "support/TestEnvironment.h"

#include <QLineEdit>
#include <QPushButton>

using testing::HasSubstr;
using namespace Widgets;

namespace
{

// The dialog of somebody whose passwords and services are in the client library's own files.
class ConnectionFiles : public ConnectionDialog
{
protected:
    ConnectionFiles()
    {
        m_environment.set("HOME", m_folder.path().toLocal8Bit());
        for (const char *const name :
             {"PGPASSFILE", "PGSERVICEFILE", "PGSYSCONFDIR", "PGSERVICE", "PGPASSWORD"})
            m_environment.set(name, {});
    }

    void write(const QString &name, const QString &content, bool isPrivate = true) const
    {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
        file.write(content.toUtf8());
        const QFile::Permissions own = QFile::ReadOwner | QFile::WriteOwner;
        ASSERT_TRUE(file.setPermissions(isPrivate ? own : own | QFile::ReadGroup));
    }
    static QString passwords(const QString &password)
    {
        return u"# till\n127.0.0.1:%1:shop:clerk:%2\n"_qs.arg(QString::number(cluster().port()),
                                                              password);
    }
    static QString services(const QString &more = {})
    {
        return u"[till]\nhost=127.0.0.1\nport=%1\nuser=clerk\ndbname=shop\n%2"_qs.arg(
            QString::number(cluster().port()), more);
    }

    TestEnvironment m_environment;
};

TEST_F(ConnectionFiles, giveThePasswordAndTheServer)
{
    const struct
    {
        const char *what;
        const char *variable;
        QString passwordFile;
        bool isPrivate;
        QString password;
        QString serviceFile;
        QString moreOfService;
        QString address;
        QString says;
    } cases[] = {
        {"~/.pgpass",
         nullptr,
         u".pgpass"_qs,
         true,
         password(),
         {},
         {},
         uri(),
         u"Server version"_qs},
        {"PGPASSFILE",
         "PGPASSFILE",
         u"passwords"_qs,
         true,
         password(),
         {},
         {},
         uri(),
         u"Server version"_qs},
        {"open to others",
         nullptr,
         u".pgpass"_qs,
         false,
         password(),
         {},
         {},
         uri(),
         u"chmod 600"_qs},
        {"wrong",
         nullptr,
         u".pgpass"_qs,
         true,
         u"coffee"_qs,
         {},
         {},
         uri(),
         u"password retrieved from file"_qs},
        {"~/.pg_service.conf",
         nullptr,
         u".pgpass"_qs,
         true,
         password(),
         u".pg_service.conf"_qs,
         {},
         u"service=till"_qs,
         u"Server version"_qs},
        {"PGSERVICEFILE", "PGSERVICEFILE", u".pgpass"_qs, true, u"coffee"_qs, u"services"_qs,
         u"password=%1\napplication_name=till"_qs.arg(password()), u"service=till"_qs,
         u"Server version"_qs},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.what);
        write(test.passwordFile, passwords(test.password), test.isPrivate);
        if (!test.serviceFile.isEmpty())
            write(test.serviceFile, services(test.moreOfService));
        if (test.variable)
            m_environment.set(
                test.variable,
                m_folder.filePath(test.serviceFile.isEmpty() ? test.passwordFile : test.serviceFile)
                    .toLocal8Bit());
        open();
        paste(u"Address of the connection"_qs, test.address);
        ASSERT_TRUE(DXWait::until([this] { return field(u"User"_qs) == u"clerk"_qs; }));
        EXPECT_EQ(field(u"Address of the connection"_qs), QString());
        EXPECT_EQ(field(u"Database"_qs), u"shop"_qs);
        click<QPushButton>(dialog(), u"Test connection"_qs);
        EXPECT_THAT(message().toStdString(), HasSubstr(test.says.toStdString()));
        if (!message().contains(u"Server version"))
            continue;
        m_connected.reset();
        QTest::keyClick(dialog(), Qt::Key_Return);
        ASSERT_TRUE(DXWait::until([this] { return m_connected != nullptr; }));
        EXPECT_EQ(scalar(u"SELECT session_user"_qs), u"clerk"_qs);
        if (test.variable)
            m_environment.set(test.variable, {});
    }
}

TEST_F(ConnectionFiles, lackTheService)
{
    write(u".pg_service.conf"_qs, services());
    open();
    const auto *const address = named<QLineEdit>(dialog(), u"Address of the connection"_qs);
    paste(u"Host"_qs, u"service=nosuch"_qs);
    EXPECT_TRUE(DXWait::until([&] { return !address->accessibleDescription().isEmpty(); }));
    EXPECT_THAT(address->accessibleDescription().toStdString(),
                HasSubstr("definition of service \"nosuch\" not found"));
    EXPECT_EQ(field(u"Host"_qs), QString());
}

} // namespace
