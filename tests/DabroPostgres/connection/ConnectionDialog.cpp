// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/connection/ConnectionDialog.h"

#include "client/DabroDatabaseClient.h"
#include "client/DatabaseResultSet.h"
#include "support/Background.h"
#include "ui/DXMessageArea.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTcpServer>

namespace
{

const QString key = QStringLiteral("PostgresRecentConnections");

} // namespace

ConnectionDialog::ConnectionDialog()
    : m_store(SavedConnections::storeIn(m_folder.path()))
    , m_list(SavedConnections::listOf<PostgresRecentConnection>(key, m_store))
{
    m_window.show();
}

ConnectionDialog::~ConnectionDialog()
{
    m_controller.reset();
    m_store.finish();
    EXPECT_TRUE(SavedConnections::areStored(m_folder.path(), key));
}

PostgresCluster &ConnectionDialog::cluster()
{
    static PostgresCluster cluster(
        {.hba = {QStringLiteral("host all all 127.0.0.1/32 scram-sha-256")}, .tcp = true});
    static const bool hasClerk = [] {
        cluster.psql(QStringLiteral("CREATE ROLE clerk LOGIN PASSWORD 'tea & biscuits'"));
        cluster.psql(QStringLiteral("CREATE DATABASE shop OWNER clerk"));
        return true;
    }();
    EXPECT_TRUE(hasClerk);
    return cluster;
}

QString ConnectionDialog::uri()
{
    return QStringLiteral("postgres://clerk@127.0.0.1:%1/shop").arg(cluster().port());
}

QDialog *ConnectionDialog::open(const std::shared_ptr<SQLRecentConnection> &record)
{
    std::shared_ptr<PostgresDatabaseConnectionDetails> details;
    if (record) {
        details = std::static_pointer_cast<PostgresDatabaseConnectionDetails>(
            record->createDatabaseConnectionDetails());
    } else {
        details = std::make_shared<PostgresDatabaseConnectionDetails>();
        details->setPort(PostgresDatabaseConnectionDetails::defaultPort);
    }
    m_controller = std::make_shared<PostgresConnectionWindowController>(details, m_list);
    QObject::connect(
        m_controller.get(), &DXConnectionWindowController::connected, &m_window,
        [this](const std::shared_ptr<DabroDBC> &connected) { m_connected = connected; });
    m_controller->open(&m_window);
    EXPECT_TRUE(DXWait::until([this] { return m_list.isLoaded() && dialog()->isVisible(); }));
    return dialog();
}

void ConnectionDialog::openOnAddress()
{
    open();
    paste(QStringLiteral("Host"), uri());
    ASSERT_TRUE(DXWait::until([this] { return field(QStringLiteral("User")) == u"clerk"; }));
}

void ConnectionDialog::openAndConnectTo(QTcpServer &server)
{
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    open();
    Widgets::type<QLineEdit>(dialog(), QStringLiteral("Host"), QStringLiteral("127.0.0.1"));
    Widgets::type<QLineEdit>(dialog(), QStringLiteral("Port"),
                             QString::number(server.serverPort()));
    QTest::keyClick(dialog(), Qt::Key_Return);
    ASSERT_TRUE(DXWait::until([&server] { return server.hasPendingConnections(); }));
}

QDialog *ConnectionDialog::dialog() const
{
    return m_controller->dialog();
}

void ConnectionDialog::paste(const QString &field, const QString &text) const
{
    QGuiApplication::clipboard()->setText(text);
    auto *const line = Widgets::named<QLineEdit>(dialog(), field);
    ASSERT_TRUE(line);
    line->setFocus();
    QTest::keySequence(line, QKeySequence::Paste);
}

QString ConnectionDialog::field(const QString &name) const
{
    const auto *const line = Widgets::named<QLineEdit>(dialog(), name);
    return line ? line->text() : QString();
}

QString ConnectionDialog::message() const
{
    const auto *const area = dialog()->findChild<DXMessageArea *>();
    EXPECT_TRUE(DXWait::until([area] {
        return !area->message().isEmpty() && !area->message().startsWith(u"Connecting to");
    }));
    return area->message();
}

QList<SQLRecentConnectionList::Record> ConnectionDialog::stored()
{
    auto &list = SavedConnections::listOf<PostgresRecentConnection>(
        key, SavedConnections::storeIn(m_folder.path()));
    const auto read = [&list] {
        const auto isRead = std::make_shared<bool>(false);
        list.load([isRead](const DXError &) { *isRead = true; });
        DXWait::until([isRead] { return *isRead; });
        return !list.recentConnections().isEmpty();
    };
    // Written in the background, after the dialog has closed.
    EXPECT_TRUE(DXWait::until(read));
    return list.recentConnections();
}

QString ConnectionDialog::scalar(const QString &query) const
{
    if (!m_connected)
        return {};
    return inBackground([&] {
        const auto client = m_connected->createNewClient();
        DXError error;
        EXPECT_TRUE(client->connect(&error)) << qPrintable(error.description());
        const auto rows = client->executeQuery(query, &error);
        return rows && rows->next(&error) ? rows->stringForColumnIndex(0).toText() : QString();
    });
}
