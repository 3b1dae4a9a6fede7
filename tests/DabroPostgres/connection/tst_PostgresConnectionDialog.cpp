// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/connection/ConnectionDialog.h"

#include "connection/PostgresAdvancedSheet.h"
#include "connection/PostgresParameterTable.h"
#include "connection/PostgresSSLSheet.h"
#include "support/PrintQt.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTcpServer>
#include <QToolButton>

using testing::HasSubstr;
using namespace Widgets;

namespace
{

TEST_F(ConnectionDialog, isFilledByAPastedAddressAndConnects)
{
    open();
    for (const QString &name : {u"Address of the connection"_qs, u"Host"_qs, u"Password"_qs}) {
        type<QLineEdit>(dialog(), u"Host"_qs, u"elsewhere"_qs);
        paste(name, uri() + u"?sslmode=disable&application_name=till"_qs);
        ASSERT_TRUE(DXWait::until([this] { return field(u"User"_qs) == u"clerk"_qs; }));
        EXPECT_EQ(field(u"Host"_qs), u"127.0.0.1"_qs);
        EXPECT_EQ(field(u"Port"_qs), QString::number(cluster().port()));
        EXPECT_EQ(field(u"Database"_qs), u"shop"_qs);
        EXPECT_EQ(field(u"Password"_qs), QString());
        type<QLineEdit>(dialog(), u"User"_qs, u"nobody"_qs);
    }
    type<QLineEdit>(dialog(), u"User"_qs, u"clerk"_qs);
    type<QLineEdit>(dialog(), u"Name of the connection"_qs, u"shop/till"_qs);
    type<QLineEdit>(dialog(), u"Password"_qs, password());
    QTest::keyClick(dialog(), Qt::Key_Return);
    ASSERT_TRUE(DXWait::until([this] { return m_connected != nullptr; }));
    EXPECT_TRUE(DXWait::until([this] { return !dialog(); }));
    EXPECT_EQ(scalar(u"SHOW application_name"_qs), u"till"_qs);
    const auto records = stored();
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records.first()->alias(), u"shop/till"_qs);
    EXPECT_EQ(records.first()->connectionId(), m_connected->connectionId());
    EXPECT_EQ(records.first()->password(), password());
}

TEST_F(ConnectionDialog, connectsNowhereElseThanToATypedAddress)
{
    open();
    auto *const address = named<QLineEdit>(dialog(), u"Address of the connection"_qs);
    const auto isRead = [&] {
        return DXWait::until([&] { return address->text().isEmpty(); })
               && field(u"User"_qs) == u"clerk"_qs;
    };
    address->setFocus();
    QTest::keyClicks(address, uri());
    click<QPushButton>(dialog(), u"Test connection"_qs);
    EXPECT_TRUE(isRead());
    type<QLineEdit>(dialog(), u"User"_qs, u"nobody"_qs);
    address->setFocus();
    QTest::keyClicks(address, uri());
    QTest::keyClick(address, Qt::Key_Tab);
    EXPECT_TRUE(isRead());
    // What cannot be read stays, and is in the way.
    address->setFocus();
    QTest::keyClicks(address, u"postgres://h:x/"_qs);
    click<QPushButton>(dialog(), u"Connect"_qs);
    EXPECT_TRUE(DXWait::until([&] { return !address->accessibleDescription().isEmpty(); }));
    EXPECT_EQ(address->text(), u"postgres://h:x/"_qs);
    EXPECT_FALSE(m_connected);
}

TEST_F(ConnectionDialog, keepsNoPasswordThatIsNotToBeRemembered)
{
    openOnAddress();
    type<QLineEdit>(dialog(), u"Password"_qs, password());
    click<QCheckBox>(dialog(), u"Remember"_qs);
    click<QPushButton>(dialog(), u"Save"_qs);
    EXPECT_THAT(message().toStdString(), HasSubstr("is saved"));
    EXPECT_EQ(stored().first()->password(), QString());
    click<QPushButton>(dialog(), u"Connect"_qs);
    ASSERT_TRUE(DXWait::until([this] { return m_connected != nullptr; }));
    EXPECT_EQ(stored().size(), 1);
    EXPECT_EQ(stored().first()->password(), QString());
}

TEST_F(ConnectionDialog, saysWhyItCannotConnectAndLosesNothing)
{
    openOnAddress();
    const auto *const secret = named<QLineEdit>(dialog(), u"Password"_qs);
    click<QPushButton>(dialog(), u"Test connection"_qs);
    EXPECT_THAT(message().toStdString(), HasSubstr("password"));
    EXPECT_EQ(secret->accessibleDescription(), u"The server asks for a password."_qs);
    EXPECT_TRUE(secret->hasFocus());

    type<QLineEdit>(dialog(), u"Password"_qs, u"coffee"_qs);
    EXPECT_EQ(secret->accessibleDescription(), QString());
    QTest::keyClick(dialog(), Qt::Key_Return);
    EXPECT_TRUE(DXWait::until([&] { return !secret->accessibleDescription().isEmpty(); }));
    EXPECT_THAT(message().toStdString(), HasSubstr("password authentication failed"));
    EXPECT_EQ(field(u"Password"_qs), u"coffee"_qs);

    type<QLineEdit>(dialog(), u"Port"_qs, u"1"_qs);
    QTest::keyClick(dialog(), Qt::Key_Return);
    EXPECT_TRUE(DXWait::until(
        [this] { return named<QLineEdit>(dialog(), u"Port"_qs)->hasFocus() && !m_connected; }));
    EXPECT_THAT(message().toStdString(), HasSubstr("Connection refused"));

    type<QLineEdit>(dialog(), u"Port"_qs, u"seven"_qs);
    QTest::keyClick(dialog(), Qt::Key_Return);
    EXPECT_EQ(named<QLineEdit>(dialog(), u"Port"_qs)->accessibleDescription(), u"1 to 65535"_qs);

    type<QLineEdit>(dialog(), u"Port"_qs, QString::number(cluster().port()));
    type<QLineEdit>(dialog(), u"Password"_qs, password());
    click<QPushButton>(dialog(), u"Test connection"_qs);
    EXPECT_TRUE(DXWait::until([this] { return message().contains(u"Server version"); }));
    EXPECT_THAT(message().toStdString(), HasSubstr("TCP 127.0.0.1"));
    EXPECT_FALSE(m_connected);
}

TEST_F(ConnectionDialog, isStoppedByEscapeAndClosedByTheNext)
{
    QTcpServer silent;
    openAndConnectTo(silent);
    named<QPushButton>(dialog(), u"Stop"_qs);
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_EQ(message(), u"Stopped."_qs);
    EXPECT_TRUE(dialog()->isVisible());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_TRUE(DXWait::until([this] { return !dialog(); }));
}

TEST_F(ConnectionDialog, showsAFailureOnlyAtTheConnectionThatFailed)
{
    QTcpServer silent;
    openAndConnectTo(silent);
    click<QToolButton>(dialog(), u"New connection"_qs);
    EXPECT_TRUE(named<QPushButton>(dialog(), u"Connect"_qs)->isEnabled());
    EXPECT_EQ(field(u"Host"_qs), QString());

    const DXConnectionAttempt::Result result{.error = DXError(QString(), 0, u"failed"_qs)};
    EXPECT_FALSE(m_controller->openAfterFailure(&m_window, u"another"_qs, result));
    const QString shown = static_cast<DXConnectionDialog *>(dialog())->shownId();
    EXPECT_TRUE(m_controller->openAfterFailure(&m_window, shown.toUpper(), result));
    EXPECT_EQ(message(), u"failed"_qs);
}

TEST_F(ConnectionDialog, tellsWhenWhatWasConnectedIsNotSaved)
{
    openOnAddress();
    type<QLineEdit>(dialog(), u"Password"_qs, password());
    DXError told;
    QObject::connect(m_controller.get(), &DXConnectionWindowController::notSaved, &m_window,
                     [&told](const DXError &error) { told = error; });
    // Sealed with a key that is not there.
    QFile file(m_folder.filePath(u"secrets"_qs));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    QTest::keyClick(dialog(), Qt::Key_Return);
    EXPECT_TRUE(DXWait::until([&told] { return bool(told); }));
    EXPECT_TRUE(m_connected);
}

TEST_F(ConnectionDialog, editsASavedConnectionAndKeepsWhatWasTypedForAnother)
{
    for (const QString &name : {u"first"_qs, u"second"_qs}) {
        const auto record = std::make_shared<PostgresRecentConnection>();
        record->setConnectionId(name);
        record->setAlias(name);
        record->setServerHost(u"db.example"_qs);
        record->setRememberPassword(true);
        record->setPassword(u"kept"_qs);
        m_list.updateRecentConnection(record, [](const DXError &) {});
    }
    const auto records = m_list.recentConnections();
    open(records.first());
    auto *const alias = named<QLineEdit>(dialog(), u"Name of the connection"_qs);
    const QString shown = alias->text();
    type<QLineEdit>(dialog(), u"Name of the connection"_qs, u"renamed"_qs);
    auto *const view = dialog()->findChild<QAbstractItemView *>();
    view->setFocus();
    QTest::keyClick(view, view->currentIndex().row() == 0 ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_TRUE(alias->text() != shown && alias->text() != u"renamed"_qs);
    QTest::keyClick(view, view->currentIndex().row() == 0 ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_EQ(alias->text(), u"renamed"_qs);
    EXPECT_EQ(records.first()->alias(), shown);
    click<QPushButton>(dialog(), u"Save"_qs);
    EXPECT_EQ(message(), u"\"renamed\" is saved."_qs);
    EXPECT_EQ(stored().size(), 2);
    EXPECT_EQ(stored().first()->alias(), u"renamed"_qs);
    EXPECT_EQ(stored().first()->password(), u"kept"_qs);
}

TEST_F(ConnectionDialog, setsParametersAsTheyWereTyped)
{
    openOnAddress();
    type<QLineEdit>(dialog(), u"Password"_qs, password());
    click<QPushButton>(dialog(), u"Advanced settings"_qs);
    auto *sheet = opened<PostgresAdvancedSheet>();
    sheet->findChild<QComboBox *>()->setCurrentText(u"Asia/Tokyo"_qs);
    click<QPushButton>(sheet, u"Add"_qs);
    auto *const table = sheet->findChild<QTableWidget *>();
    table->item(0, 0)->setText(u"no name"_qs);
    table->item(0, 1)->setText(u"it's 30"_qs);
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_TRUE(sheet->isVisible());
    table->item(0, 0)->setText(u"application_name"_qs);
    auto *const ofConnection = sheet->findChildren<PostgresParameterTable *>().last();
    click<QPushButton>(ofConnection, u"Add"_qs);
    auto *const item = ofConnection->findChild<QTableWidget *>()->item(0, 1);
    ofConnection->findChild<QTableWidget *>()->item(0, 0)->setText(u"target_session_attrs"_qs);
    item->setText(u"any server"_qs);
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_TRUE(sheet->isVisible());
    item->setText(u"standby"_qs);
    click<QPushButton>(sheet, u"Apply"_qs);
    click<QPushButton>(dialog(), u"Test connection"_qs);
    EXPECT_THAT(message().toStdString(), HasSubstr("not in hot standby mode"));
    click<QPushButton>(dialog(), u"Advanced settings"_qs);
    EXPECT_TRUE(DXWait::until([&] {
        sheet = opened<PostgresAdvancedSheet>();
        return sheet->isVisible();
    }));
    auto *const again = sheet->findChildren<PostgresParameterTable *>().last();
    again->findChild<QTableWidget *>()->item(0, 1)->setText(u"primary"_qs);
    click<QPushButton>(sheet, u"Apply"_qs);
    QTest::keyClick(dialog(), Qt::Key_Return);
    ASSERT_TRUE(DXWait::until([this] { return m_connected != nullptr; }));
    EXPECT_EQ(scalar(u"SHOW TimeZone"_qs), u"Asia/Tokyo"_qs);
    EXPECT_EQ(scalar(u"SHOW application_name"_qs), u"it's 30"_qs);
}

TEST_F(ConnectionDialog, keepsTheFilesOfTheSSLSheet)
{
    QFile file(m_folder.filePath(u"root.crt"_qs));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    open();
    click<QPushButton>(dialog(), u"SSL settings"_qs);
    auto *sheet = opened<PostgresSSLSheet>();
    named<QComboBox>(sheet, u"Encryption"_qs)->setCurrentIndex(5);
    type<QLineEdit>(sheet, u"Certificate revocation list"_qs, file.fileName());
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_TRUE(sheet->isVisible()) << "A revocation list alone would be ignored";
    type<QLineEdit>(sheet, u"Root certificate of the server"_qs, u"/nowhere/root.crt"_qs);
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_TRUE(sheet->isVisible());
    type<QLineEdit>(sheet, u"Root certificate of the server"_qs, file.fileName());
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_FALSE(sheet->isVisible());
    click<QPushButton>(dialog(), u"Save"_qs);
    EXPECT_THAT(message().toStdString(), HasSubstr("is saved"));
    const auto record = std::static_pointer_cast<PostgresRecentConnection>(stored().first());
    ASSERT_TRUE(record->sslDetails());
    EXPECT_EQ(record->sslDetails()->sslMode(), u"verify-full"_qs);
    EXPECT_EQ(record->sslDetails()->serverRootCertificate(), file.fileName());
    EXPECT_EQ(record->sslDetails()->serverRevocationList(), file.fileName());

    click<QPushButton>(dialog(), u"SSL settings"_qs);
    EXPECT_TRUE(DXWait::until([&] {
        sheet = opened<PostgresSSLSheet>();
        return sheet->isVisible();
    }));
    EXPECT_EQ(named<QLineEdit>(sheet, u"Certificate revocation list"_qs)->text(), file.fileName());
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_TRUE(dialog()->isVisible());
}

} // namespace
