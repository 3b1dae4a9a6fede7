// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXDBCTabColorHelper.h"
#include "client/DabroDBC.h"
#include "client/SQLRecentConnection.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "support/SavedConnections.h"
#include "support/Widgets.h"
#include "ui/connection/DXSavedConnectionsModel.h"
#include "ui/connection/DXSavedConnectionsView.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeView>

#include <gmock/gmock.h>

using namespace Widgets;
using testing::HasSubstr;

namespace
{

class Connection final : public SQLRecentConnection
{
public:
    QString icon32() const override { return {}; }
    QString iconLarge() const override { return {}; }
    std::shared_ptr<DabroDBC> createDatabaseConnectionDetails() const override { return {}; }
};

class SavedConnectionsView : public testing::Test
{
protected:
    SavedConnectionsView()
        : m_store(SavedConnections::storeIn(m_folder.path()))
        , m_list(SavedConnections::listOf<Connection>(u"one"_qs, m_store))
    {
        using View = DXSavedConnectionsView;
        m_view.resize(260, 400);
        m_view.show();
        const auto note = [this](const QString &what) {
            return [this, what](const std::shared_ptr<SQLRecentConnection> &record) {
                m_asked.append(what + u' ' + record->alias());
            };
        };
        QObject::connect(&m_view, &View::connectRequested, &m_view, note(u"connect"_qs));
        QObject::connect(&m_view, &View::editRequested, &m_view, note(u"edit"_qs));
        QObject::connect(&m_view, &View::newRequested, &m_view,
                         [this] { m_asked.append(u"new"_qs); });
    }

    void add(SQLRecentConnectionList &list, const QString &alias, const QString &host = {})
    {
        const auto record = std::make_shared<Connection>();
        record->setConnectionId(u"id of "_qs + alias);
        record->setAlias(alias);
        record->setServerHost(host);
        // Times are kept to the millisecond, and lists are sorted by them.
        const QDateTime now = QDateTime::currentDateTimeUtc();
        EXPECT_TRUE(DXWait::until([&now] { return QDateTime::currentDateTimeUtc() > now; }));
        list.updateRecentConnection(record, [saved = m_saved](const DXError &) { ++*saved; });
    }
    void show()
    {
        m_view.setLists({&m_list});
        EXPECT_TRUE(DXWait::until([this] { return m_list.isLoaded(); }));
    }
    /// What the tree shows, groups with what is in them.
    QString shown() const
    {
        const QAbstractItemModel *const model = tree()->model();
        QStringList rows;
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex index = model->index(row, 0);
            QStringList inner;
            for (int child = 0; child < model->rowCount(index); ++child)
                inner.append(model->index(child, 0, index).data().toString());
            rows.append(index.data().toString()
                        + (inner.isEmpty() ? QString() : u'(' + inner.join(u' ') + u')'));
        }
        return rows.join(u' ');
    }
    QTreeView *tree() const { return m_view.findChild<QTreeView *>(); }
    QLineEdit *search() const { return m_view.findChild<QLineEdit *>(); }

    QTemporaryDir m_folder;
    DXSecretStore &m_store;
    SQLRecentConnectionList &m_list;
    DXSavedConnectionsView m_view;
    QStringList m_asked;
    std::shared_ptr<int> m_saved = std::make_shared<int>(0);
};

TEST_F(SavedConnectionsView, groupsAndFindsConnectionsOfAllLists)
{
    auto &other = SavedConnections::listOf<Connection>(u"two"_qs, m_store);
    add(m_list, u"work/EU/live"_qs, u"db1"_qs);
    add(m_list, u"work/EU/test"_qs, u"db2"_qs);
    add(m_list, u"local"_qs);
    add(other, u"art/blog"_qs, u"db1.example"_qs);
    add(other, u"/odd"_qs);
    const QAbstractItemModelTester tester(tree()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    m_view.setLists({&m_list, &other});
    ASSERT_TRUE(DXWait::until([&] { return m_list.isLoaded() && other.isLoaded(); }));
    EXPECT_EQ(shown(), u"local /odd art(blog) work/EU(test live)"_qs);
    const struct
    {
        QString words;
        QString shown;
    } searches[] = {
        {u"DB1"_qs, u"art(blog) work/EU(live)"_qs},
        {u"eu db1"_qs, u"work/EU(live)"_qs},
        {u"local"_qs, u"local"_qs},
        {u"nothing like it"_qs, QString()},
    };
    for (const auto &test : searches) {
        search()->setText(test.words);
        EXPECT_EQ(shown(), test.shown) << qPrintable(test.words);
    }
    EXPECT_FALSE(tree()->isVisible());
    QTest::keyClick(search(), Qt::Key_Escape);
    EXPECT_EQ(shown(), u"local /odd art(blog) work/EU(test live)"_qs);
    // Groups that were folded stay so.
    const QModelIndex group = tree()->model()->index(3, 0);
    tree()->setCurrentIndex(group);
    QTest::keyClick(tree(), Qt::Key_Return);
    search()->setText(u"live"_qs);
    EXPECT_TRUE(tree()->isExpanded(tree()->model()->index(0, 0)));
    search()->clear();
    EXPECT_FALSE(tree()->isExpanded(tree()->model()->index(3, 0)));
}

TEST_F(SavedConnectionsView, isDrivenByKeys)
{
    add(m_list, u"first"_qs);
    add(m_list, u"shop/second"_qs);
    show();
    QTest::keyClicks(search(), u"shop"_qs);
    QTest::keyClick(search(), Qt::Key_Return);
    QTest::keyClick(search(), Qt::Key_Escape);
    QTest::keyClick(search(), Qt::Key_Down);
    QTest::keyClick(tree(), Qt::Key_Return);
    QTest::keyClick(tree(), Qt::Key_F2);
    EXPECT_EQ(m_asked, (QStringList{u"connect shop/second"_qs, u"connect shop/second"_qs,
                                    u"edit shop/second"_qs}));
    m_asked.clear();
    QTest::keyClick(tree(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(m_asked, QStringList{u"edit shop/second (copy)"_qs});
    EXPECT_EQ(m_list.recentConnections().size(), 3);
    EXPECT_EQ(m_view.currentRecord()->alias(), u"shop/second (copy)"_qs);
    EXPECT_EQ(m_view.createMenu()->actions().size(), 6);
}

TEST_F(SavedConnectionsView, deletesOnlyWhenThatIsConfirmed)
{
    add(m_list, u"<b>first"_qs);
    add(m_list, u"second"_qs);
    show();
    m_view.setCurrentId(u"id of <b>first"_qs);
    tree()->setFocus();
    QTest::keyClick(tree(), Qt::Key_Delete);
    QPointer<QMessageBox> box = opened<QMessageBox>();
    EXPECT_THAT(box->text().toStdString(), HasSubstr("\"<b>first\""));
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_TRUE(DXWait::until([&box] { return !box; }));
    EXPECT_EQ(m_list.recentConnections().size(), 2);
    m_view.activateWindow();
    EXPECT_TRUE(DXWait::until([this] { return tree()->hasFocus(); }));
    QTest::keyClick(tree(), Qt::Key_Delete);
    box = opened<QMessageBox>();
    click<QPushButton>(box, u"Delete"_qs);
    EXPECT_EQ(shown(), u"second"_qs);
    EXPECT_TRUE(DXWait::until([&box] { return !box; }));
}

TEST_F(SavedConnectionsView, saysWhatToDoWhenThereIsNothing)
{
    show();
    EXPECT_TRUE(DXWait::until([this] {
        const auto *const button = m_view.findChild<QPushButton *>(QString());
        return button && !tree()->isVisible();
    }));
    click<QPushButton>(&m_view, u"New connection"_qs);
    EXPECT_EQ(m_asked, QStringList{u"new"_qs});
}

TEST_F(SavedConnectionsView, waitsForALockedStoreWithoutReplacingIt)
{
    show();
    add(m_list, u"kept"_qs);
    EXPECT_TRUE(DXWait::until([this] { return *m_saved == 1; }));
    const QString key = QDir(m_folder.path()).filePath(u"secrets.key"_qs);
    EXPECT_TRUE(DXWait::until([&] { return QFile::rename(key, key + u".away"_qs); }));

    auto &locked = SavedConnections::listOf<Connection>(u"one"_qs, m_store);
    m_view.setLists({&locked});
    QPushButton *again = nullptr;
    EXPECT_TRUE(DXWait::until([&] {
        const auto buttons = m_view.findChildren<QPushButton *>();
        for (QPushButton *const button : buttons) {
            if (button->isVisible() && button->text().contains(u"again"_qs))
                again = button;
        }
        return again != nullptr;
    }));
    add(locked, u"new"_qs);
    EXPECT_EQ(shown(), u"new"_qs);
    ASSERT_TRUE(QFile::rename(key + u".away"_qs, key));
    QTest::mouseClick(again, Qt::LeftButton);
    EXPECT_TRUE(DXWait::until([this] { return shown() == u"new kept"_qs; })) << qPrintable(shown());
    EXPECT_FALSE(again->isVisible());
}

TEST_F(SavedConnectionsView, tellsWhenACopyIsNotSaved)
{
    show();
    add(m_list, u"first"_qs);
    m_view.setCurrentId(u"id of first"_qs);
    EXPECT_TRUE(DXWait::until([this] { return *m_saved == 1; }));
    EXPECT_TRUE(SavedConnections::areStored(m_folder.path(), u"one"_qs));
    QFile file(QDir(m_folder.path()).filePath(u"secrets"_qs));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    m_view.activateWindow();
    tree()->setFocus();
    EXPECT_TRUE(DXWait::until([this] { return tree()->hasFocus(); }));
    QTest::keyClick(tree(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(DXWait::until([this] {
        const auto labels = m_view.findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(), [](const QLabel *label) {
            return label->isVisible() && label->text().contains(u"cannot be read"_qs);
        });
    }));
}

TEST(SQLRecentConnection, keepsTheColourThatWasChosen)
{
    Connection record;
    record.setConnectionId(u"id"_qs);
    record.setAlias(u"production"_qs);
    EXPECT_EQ(record.effectiveTabColor(), DXDBCTabColorHelper::colors().first());
    record.setTabColor(DXDBCTabColorHelper::colors().at(2));
    Connection read;
    read.decode(record.encode());
    read.didLoad();
    EXPECT_EQ(read.effectiveTabColor(), record.tabColor());
    EXPECT_EQ(DXDBCTabColorHelper::sharedInstance().colorForId(u"id"_qs), record.tabColor());
}

} // namespace
