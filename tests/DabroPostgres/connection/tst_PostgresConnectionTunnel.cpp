// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/connection/ConnectionDialog.h"
#include "support/PrintQt.h"
#include "support/TestEnvironment.h"
#include "support/TestSshServer.h"
#include "ui/DXMessageArea.h"
#include "ui/connection/DXSSHPromptDialog.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using testing::HasSubstr;
using namespace Widgets;

namespace
{

// The dialog, and an SSH server that is called "bastion" in the user's configuration.
class ConnectionTunnel : public ConnectionDialog
{
protected:
    ConnectionTunnel()
    {
        const QString configuration =
            QStringLiteral("Host bastion\n    HostName 127.0.0.1\n    Port %1\n    User %2\n"
                           "    IdentityFile \"%3\"\nInclude \"%4\"\n")
                .arg(QString::number(m_ssh.port()), m_ssh.username(), m_ssh.lockedKeyFile(),
                     m_ssh.forgetfulConfigurationFile());
        m_environment.set("PATH", m_ssh.programFolder(configuration.toUtf8()).toLocal8Bit() + ':'
                                      + qgetenv("PATH"));
        open();
        paste(u"Host"_qs, uri());
        EXPECT_TRUE(DXWait::until([this] { return field(u"User"_qs) == u"clerk"_qs; }));
        type<QLineEdit>(dialog(), u"Password"_qs, password());
        click<QCheckBox>(dialog(), u"Connect through an SSH tunnel"_qs);
    }

    void test() const { click<QPushButton>(dialog(), u"Test connection"_qs); }
    /// What ssh asks, once it asks something else than in last.
    static DXSSHPromptDialog *question(const QWidget *last = nullptr)
    {
        DXSSHPromptDialog *found = nullptr;
        EXPECT_TRUE(DXWait::until([&] {
            found = opened<DXSSHPromptDialog>();
            return found && found != last;
        }));
        return found;
    }
    static QString textOf(const QWidget &window)
    {
        QStringList texts;
        for (const QLabel *const label : window.findChildren<QLabel *>())
            texts += label->text();
        return texts.join(u'\n');
    }
    qint64 knownHosts() const { return QFileInfo(m_ssh.file(u"known_hosts_empty"_qs)).size(); }

    const TestSshServer m_ssh;
    TestEnvironment m_environment;
};

TEST_F(ConnectionTunnel, asksForTrustAndForThePassphrase)
{
    type<QLineEdit>(dialog(), u"SSH server"_qs, u"bastion"_qs);
    // A key that was meant for something else trusts nobody.
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        test();
        auto *const trust = question();
        ASSERT_TRUE(trust);
        EXPECT_EQ(trust->parentWidget(), dialog());
        EXPECT_THAT(textOf(*trust).toStdString(), HasSubstr("SHA256:"));
        QTest::keyClick(trust, key);
        EXPECT_EQ(message(), u"The SSH tunnel through bastion could not be opened.\n"
                             "Host key verification failed."_qs);
        EXPECT_EQ(knownHosts(), 0);
    }
    test();
    auto *const trust = question();
    ASSERT_TRUE(trust);
    click<QPushButton>(trust, u"Trust this host"_qs);
    auto *secret = question(trust);
    ASSERT_TRUE(secret);
    EXPECT_GT(knownHosts(), 0);
    QTest::keyClick(secret, Qt::Key_Escape);
    EXPECT_THAT(message().toStdString(), HasSubstr("Permission denied"));

    test();
    secret = question();
    ASSERT_TRUE(secret);
    EXPECT_THAT(textOf(*secret).toStdString(), HasSubstr("asks for a secret"));
    click<QCheckBox>(secret, u"Keep it until the program ends"_qs);
    type<QLineEdit>(secret, secret->findChild<QLineEdit *>()->accessibleName(), u"wrong"_qs);
    QTest::keyClick(secret, Qt::Key_Return);
    secret = question(secret);
    ASSERT_TRUE(secret);
    EXPECT_THAT(textOf(*secret).toStdString(), HasSubstr("That was not it"));
    QTest::keyClicks(secret->findChild<QLineEdit *>(), m_ssh.passphrase());
    QTest::keyClick(secret, Qt::Key_Return);
    EXPECT_THAT(message().toStdString(), HasSubstr("through an SSH tunnel to bastion"));

    // It was kept this time.
    QTest::keyClick(dialog(), Qt::Key_Return);
    ASSERT_TRUE(DXWait::until([this] { return m_connected != nullptr; }));
    EXPECT_EQ(scalar(u"SELECT session_user"_qs), u"clerk"_qs);
}

TEST_F(ConnectionTunnel, isDescribedByFields)
{
    const auto problem = [this](const QString &name) {
        return named<QLineEdit>(dialog(), name)->accessibleDescription();
    };
    const QString server = u"SSH server"_qs;
    const QString port = u"Port of the SSH server"_qs;
    const QString key = u"Private key of the SSH tunnel"_qs;
    const struct
    {
        QString field;
        QString wrong;
        QString says;
        QString right;
    } cases[] = {
        {server, u" "_qs, u"Name the SSH server"_qs, u"127.0.0.1"_qs},
        {server, u"two hosts"_qs, u"no name of a server"_qs, u"127.0.0.1"_qs},
        {port, u"70000"_qs, u"1 to 65535"_qs, QString::number(m_ssh.port())},
        {key, u"/nowhere/key"_qs, u"no file"_qs, m_ssh.keyFile()},
    };
    for (const auto &test : cases) {
        type<QLineEdit>(dialog(), test.field, test.wrong);
        this->test();
        EXPECT_THAT(problem(test.field).toStdString(), HasSubstr(test.says.toStdString()));
        EXPECT_TRUE(named<QLineEdit>(dialog(), test.field)->hasFocus());
        type<QLineEdit>(dialog(), test.field, test.right);
        EXPECT_EQ(problem(test.field), QString());
    }
    type<QLineEdit>(dialog(), u"User of the SSH server"_qs, m_ssh.username());
    test();
    click<QPushButton>(question(), u"Trust this host"_qs);
    EXPECT_THAT(message().toStdString(), HasSubstr("through an SSH tunnel to 127.0.0.1"));

    // Nobody listens where PostgreSQL usually does, which is what an empty port stands for.
    type<QLineEdit>(dialog(), u"Port"_qs, QString());
    type<QLineEdit>(dialog(), u"Host"_qs, u"127.7.7.7"_qs);
    test();
    EXPECT_TRUE(DXWait::until([this] { return message().contains(u"open failed"); }))
        << qPrintable(message());
}

} // namespace
