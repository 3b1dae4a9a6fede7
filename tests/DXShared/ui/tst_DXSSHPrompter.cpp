// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSSHPrompter.h"

#include "client/ssh/DXSSHTunnel.h"
#include "support/PrintQt.h"
#include "support/Widgets.h"
#include "ui/connection/DXSSHPromptDialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocalSocket>

#include <unistd.h>

using namespace Widgets;

namespace
{

/// One question of an ssh process, as dabro-askpass hands it over.
class Question final
{
public:
    Question(const QString &server, qint64 process, const QByteArray &text)
    {
        m_socket.connectToServer(server);
        EXPECT_TRUE(m_socket.waitForConnected());
        m_socket.write(QByteArray::number(process) + " \n" + text + '\0');
    }
    /// "Y" and the answer, once it is there; empty when it was refused.
    QByteArray answer()
    {
        EXPECT_TRUE(
            DXWait::until([this] { return m_socket.state() == QLocalSocket::UnconnectedState; }));
        return m_socket.readAll();
    }

private:
    QLocalSocket m_socket;
};

class DXSSHPrompterTest : public testing::Test
{
protected:
    DXSSHPrompterTest()
    {
        DXError error;
        EXPECT_TRUE(DXSSHPrompter::install(&error)) << qPrintable(error.description());
        m_window.show();
    }
    Question ask(qint64 process, const QByteArray &text = "Enter passphrase for key 'k': ") const
    {
        const QByteArray variable = DXSSHDelegate().sshAskpassEnvironment().value(0);
        return {QString::fromLocal8Bit(variable.sliced(variable.indexOf('=') + 1)), process, text};
    }
    /// Answers the window that asks; what its heading was.
    static QString type(const QString &secret)
    {
        auto *const window = opened<DXSSHPromptDialog>();
        const QString heading = window->findChild<QLabel *>()->text();
        QTest::keyClicks(window->findChild<QLineEdit *>(), secret);
        QTest::keyClick(window, Qt::Key_Return);
        EXPECT_TRUE(DXWait::until([guard = QPointer(window)] { return !guard; }));
        return heading;
    }

    // Two processes that are there.
    const qint64 m_one = ::getpid();
    const qint64 m_other = ::getppid();
    QWidget m_window;
};

TEST_F(DXSSHPrompterTest, asksOnceAgainForAllThatWereGivenTheWrongAnswer)
{
    Question first = ask(m_one);
    EXPECT_EQ(type(u"wrong"_qs), u"SSH asks for a secret"_qs);
    EXPECT_EQ(first.answer(), "Ywrong");
    EXPECT_EQ(ask(m_other).answer(), "Ywrong");

    Question firstAgain = ask(m_one);
    Question otherAgain = ask(m_other);
    EXPECT_EQ(type(u"right"_qs), u"That was not it: SSH asks again"_qs);
    EXPECT_EQ(firstAgain.answer(), "Yright");
    EXPECT_EQ(otherAgain.answer(), "Yright");

    // It is another question for another key.
    Question another = ask(m_one, "Enter passphrase for key 'l': ");
    EXPECT_EQ(type(u"other"_qs), u"SSH asks for a secret"_qs);
    EXPECT_EQ(another.answer(), "Yother");
}

TEST_F(DXSSHPrompterTest, forgetsTheNumbersOfProcessesThatEnded)
{
    const QByteArray text = "Enter passphrase for key 'm': ";
    // No process has this number.
    const qint64 ended = 0x7ffffffe;
    Question first = ask(ended, text);
    type(u"right"_qs);
    EXPECT_EQ(first.answer(), "Yright");
    EXPECT_EQ(ask(m_one, text).answer(), "Yright");
    EXPECT_EQ(ask(ended, text).answer(), "Yright");
}

} // namespace
