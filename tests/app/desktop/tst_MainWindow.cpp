// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"
#include "desktop/Chooser.h"
#include "desktop/DocumentJournal.h"
#include "desktop/Documents.h"
#include "desktop/MainWindow.h"
#include "support/DXWait.h"
#include "ui/DXQuerySession.h"
#include "ui/DXQueryTab.h"
#include "ui/DXSQLEditor.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QTreeView>

namespace
{

using Id = ActionSet::Id;

class MainWindowTest : public DesktopTest
{
protected:
    MainWindowTest()
    {
        PostgresCluster::shared().psql(
            u"DROP TABLE IF EXISTS browsed; CREATE TABLE browsed (x int)"_qs);
        open();
        EXPECT_TRUE(DXWait::until([this] {
            window().openArguments({uri(PostgresCluster::shared())});
            return window().documents().current() != nullptr;
        }));
    }
    // Follows names from the top, unfolding each.
    QModelIndex find(const QStringList &names) const
    {
        QModelIndex index;
        for (const QString &name : names) {
            const QAbstractItemModel &model = *tree().model();
            int row = 0;
            while (row < model.rowCount(index)
                   && !model.index(row, 0, index).data().toString().contains(name))
                ++row;
            if (row == model.rowCount(index))
                return {};
            index = model.index(row, 0, index);
            tree().expand(index);
        }
        return index;
    }
    bool hasJournal() const { return window().findChild<DocumentJournal *>()->isOpen(); }
    QString write(const QTemporaryDir &folder, const char *name, const QByteArray &content) const
    {
        const QString path = folder.filePath(QLatin1String(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
        return path;
    }
};

TEST_F(MainWindowTest, browsesAsFarAsColumns)
{
    PostgresCluster::shared().psql(
        u"DROP TABLE IF EXISTS browsed; CREATE TABLE browsed (x int)"_qs);
    const QString server = PostgresCluster::shared().socketFolder();
    EXPECT_TRUE(DXWait::until([&] {
        return find({server, u"postgres"_qs, u"Tables"_qs, u"browsed"_qs, u"x"_qs}).isValid();
    }));
    // Goes to an object by a part of its name.
    press(Qt::Key_P, Qt::ControlModifier);
    auto *const chooser = window().findChild<Chooser *>();
    ASSERT_TRUE(chooser);
    auto &list = *chooser->findChild<QListWidget *>();
    auto &field = *chooser->findChild<QLineEdit *>();
    field.setText(u"rowsed"_qs);
    EXPECT_TRUE(DXWait::until([&] { return list.count() > 0; }));
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.item(0)->text(), u"public.browsed"_qs);
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_TRUE(DXWait::until([this] { return !window().findChild<Chooser *>(); }));
}

TEST_F(MainWindowTest, findsEveryCommandByName)
{
    const int tabs = window().documents().count();
    press(Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    auto *const chooser = window().findChild<Chooser *>();
    ASSERT_TRUE(chooser);
    auto &list = *chooser->findChild<QListWidget *>();
    EXPECT_GT(list.count(), window().actions().all().size());
    auto &field = *chooser->findChild<QLineEdit *>();
    QTest::keyClicks(&field, u"tab new"_qs);
    ASSERT_EQ(list.count(), 1) << qPrintable(field.text());
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(window().documents().count(), tabs + 1);
    // Two commands on one key would both be dead.
    QStringList keys;
    for (const QAction *const action : window().actions().all() + tab().editor().actions()) {
        for (const QKeySequence &key : action->shortcuts())
            keys.append(key.toString());
    }
    EXPECT_EQ(keys.removeDuplicates(), 0) << qPrintable(keys.join(u' '));
}

TEST_F(MainWindowTest, keepsFilesAndTextsApart)
{
    const QTemporaryDir folder;
    const QString path = write(folder, "a.sql", "SELECT 'ü';\r\n");
    window().openArguments({path});
    EXPECT_EQ(tab().editor().text(), u"SELECT 'ü';\r\n"_qs);
    EXPECT_EQ(window().documents().path(tab()), path);
    const int count = window().documents().count();
    window().openArguments({path});
    EXPECT_EQ(window().documents().count(), count);

    tab().editor().insertText(u"-- mine\r\n"_qs);
    EXPECT_TRUE(window().windowTitle().contains(u"●"));
    press(Qt::Key_S, Qt::ControlModifier);
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("-- mine\r\nSELECT 'ü';\r\n"));

    // Another program's change comes in by itself, but never over what was typed.
    write(folder, "a.sql", "SELECT 2");
    EXPECT_TRUE(DXWait::until([this] { return tab().editor().text() == u"SELECT 2"; }));
    tab().editor().insertText(u"-- typed\n"_qs);
    write(folder, "a.sql", "SELECT 3");
    EXPECT_TRUE(DXWait::until([this] { return statusMessage().contains(u"another program"); }));
    EXPECT_EQ(tab().editor().text(), u"-- typed\nSELECT 2"_qs);

    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(window().documents().count(), count - 1);
    press(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(tab().editor().text(), u"-- typed\nSELECT 2"_qs);
    EXPECT_EQ(window().documents().path(tab()), path);
    window().openArguments({write(folder, "b.sql", "\xff\xfe")});
    EXPECT_TRUE(statusMessage().contains(u"UTF-8")) << qPrintable(statusMessage());
}

TEST_F(MainWindowTest, bringsTextsBackWithoutConnecting)
{
    EXPECT_TRUE(DXWait::until([this] { return hasJournal(); }));
    tab().editor().setText(u"DROP TABLE browsed;\nSELECT 'ü'"_qs);
    open();
    ASSERT_TRUE(DXWait::until([this] { return window().documents().count() > 0; }));
    EXPECT_EQ(tab().editor().text(), u"DROP TABLE browsed;\nSELECT 'ü'"_qs);
    EXPECT_FALSE(tab().hasConnection());
    press(Qt::Key_F5, Qt::NoModifier);
    EXPECT_FALSE(tab().session().isBusy());
    EXPECT_TRUE(messages().contains(u"no connection")) << qPrintable(messages());
    EXPECT_EQ(PostgresCluster::shared().psql(u"SELECT count(*) FROM browsed"_qs).trimmed(),
              u"0"_qs);
    // What is closed by hand does not come back.
    press(Qt::Key_W, Qt::ControlModifier);
    open();
    EXPECT_TRUE(DXWait::until([this] { return hasJournal(); }));
    EXPECT_EQ(window().documents().count(), 0);
}

} // namespace
