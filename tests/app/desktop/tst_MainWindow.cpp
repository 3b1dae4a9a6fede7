// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"
#include "client/DabroDBC.h"
#include "desktop/Chooser.h"
#include "desktop/Connections.h"
#include "desktop/MainWindow.h"
#include "desktop/documents/DocumentJournal.h"
#include "desktop/documents/Documents.h"
#include "support/Contrast.h"
#include "support/DXWait.h"
#include "support/Widgets.h"
#include "ui/connection/DXConnectionDialog.h"
#include "ui/connection/DXSavedConnectionsView.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryPreviewSheet.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <algorithm>

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
        open().openArguments({uri(PostgresCluster::shared())});
        EXPECT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
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
    EXPECT_EQ(QApplication::focusWidget(), &tab().editor());
}

TEST_F(MainWindowTest, searchesAgainOnlyForWhatIsNew)
{
    int searches = 0;
    QList<Chooser::Choice> known;
    auto *const chooser =
        Chooser::open(window(), u"Type"_qs, [&](const QString &, const Chooser::Answer &answer) {
            ++searches;
            answer(known);
        });
    auto &list = *chooser->findChild<QListWidget *>();
    chooser->findChild<QLineEdit *>()->setText(u"o"_qs);
    EXPECT_EQ(list.count(), 0);
    known = {{.title = u"orders"_qs, .details = {}}, {.title = u"offers"_qs, .details = {}}};
    chooser->searchAgain();
    chooser->searchAgain();
    EXPECT_TRUE(DXWait::until([&] { return list.count() == 2; }));
    EXPECT_EQ(searches, 3) << "the empty text, the letter, and what is new";
    list.setCurrentRow(1);
    known.prepend({.title = u"oaks"_qs, .details = {}});
    chooser->searchAgain();
    EXPECT_TRUE(DXWait::until([&] { return list.count() == 3; }));
    EXPECT_EQ(list.currentItem()->text(), u"offers"_qs);
    chooser->close();
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
    EXPECT_TRUE(
        DXWait::until([this] { return failures().join(u'\n').contains(u"another program"); }));
    EXPECT_EQ(tab().editor().text(), u"-- typed\nSELECT 2"_qs);
    Widgets::click<QPushButton>(&window(), u"Load the file"_qs);
    EXPECT_EQ(tab().editor().text(), u"SELECT 3"_qs);
    EXPECT_EQ(failures(), QStringList());
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(tab().editor().text(), u"-- typed\nSELECT 2"_qs);

    press(Qt::Key_W, Qt::ControlModifier);
    Widgets::click<QPushButton>(Widgets::opened<QMessageBox>(), u"Discard"_qs);
    EXPECT_TRUE(DXWait::until([&] { return window().documents().count() == count - 1; }));
    press(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(tab().editor().text(), u"-- typed\nSELECT 2"_qs);
    EXPECT_EQ(window().documents().path(tab()), path);
}

TEST_F(MainWindowTest, connectsByDialogAndFromTheList)
{
    while (window().documents().current())
        press(Qt::Key_W, Qt::ControlModifier);
    press(Qt::Key_N, Qt::ControlModifier);
    auto *const dialog = Widgets::opened<DXConnectionDialog>();
    ASSERT_TRUE(dialog);
    Widgets::type<QLineEdit>(dialog, u"Name of the connection"_qs, u"Tea shop"_qs);
    QGuiApplication::clipboard()->setText(
        QStringLiteral("host=%1 port=%2 user=dba dbname=postgres")
            .arg(PostgresCluster::shared().socketFolder(),
                 QString::number(PostgresCluster::shared().port())));
    auto *const host = Widgets::named<QLineEdit>(dialog, u"Host"_qs);
    host->setFocus();
    QTest::keySequence(host, QKeySequence::Paste);
    const auto *const user = Widgets::named<QLineEdit>(dialog, u"User"_qs);
    ASSERT_TRUE(DXWait::until([&] { return user->text() == u"dba"; }));
    Widgets::click<QPushButton>(dialog, u"Connect"_qs);
    ASSERT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    EXPECT_EQ(tab().details()->alias(), u"Tea shop"_qs);
    ASSERT_TRUE(run(u"SELECT current_user"_qs));
    EXPECT_EQ(cells(0), u"dba"_qs);

    // Its tab comes back with the connection that it had, which nobody has opened yet.
    ASSERT_TRUE(DXWait::until([this] { return hasJournal(); }));
    tab().editor().setText(u"SELECT 'again'"_qs);
    open();
    ASSERT_TRUE(
        DXWait::until([this] { return window().documents().current() && tab().hasConnection(); }));
    EXPECT_TRUE(window().connections().open().isEmpty());
    EXPECT_EQ(tab().details()->alias(), u"Tea shop"_qs);
    ASSERT_TRUE(run(tab().editor().text()));
    EXPECT_EQ(cells(0), u"again"_qs) << qPrintable(messages());

    press(Qt::Key_W, Qt::ControlModifier);
    auto *const list = window().findChild<DXSavedConnectionsView *>()->findChild<QTreeView *>();
    ASSERT_TRUE(DXWait::until([&] { return list->model()->rowCount() > 0; }));
    list->setCurrentIndex(list->model()->index(0, 0));
    QTest::keyClick(list, Qt::Key_Return);
    ASSERT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    EXPECT_EQ(window().connections().open().size(), 1);
}

TEST_F(MainWindowTest, dropsAfterShowingTheScript)
{
    const QString server = PostgresCluster::shared().socketFolder();
    const auto exists = [] {
        return PostgresCluster::shared()
                   .psql(u"SELECT count(*) FROM pg_class WHERE relname = 'browsed'"_qs)
                   .trimmed()
               == u"1";
    };
    const auto askToDrop = [&] {
        QModelIndex index;
        EXPECT_TRUE(DXWait::until([&] {
            index = find({server, u"postgres"_qs, u"Tables"_qs, u"browsed"_qs});
            return index.isValid();
        }));
        tree().setCurrentIndex(index);
        tree().setFocus();
        QTest::keyClick(&tree(), Qt::Key_Delete);
        return Widgets::opened<DXQueryPreviewSheet>();
    };
    QWidget *sheet = askToDrop();
    ASSERT_TRUE(sheet);
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_TRUE(exists());
    sheet = askToDrop();
    auto *const drop = Widgets::named<QPushButton>(sheet, u"Drop"_qs);
    ASSERT_TRUE(DXWait::until([&] { return drop->isEnabled(); }));
    QTest::mouseClick(drop, Qt::LeftButton);
    EXPECT_TRUE(DXWait::until([&] {
        return !find({server, u"postgres"_qs, u"Tables"_qs, u"browsed"_qs}).isValid();
    }));
    EXPECT_FALSE(exists());
    // No desktop hears it here, so the window tells.
    EXPECT_TRUE(DXWait::until([this] { return statusMessage().contains(u"has been dropped"); }));
}

TEST_F(MainWindowTest, bringsFilesBackAsTheyAreNow)
{
    EXPECT_TRUE(DXWait::until([this] { return hasJournal(); }));
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"saved.sql"_qs);
    tab().editor().insertText(u"SELECT 1"_qs);
    window().documents().saveAs(tab(), path);
    const QString marked = write(folder, "marked.sql", "\xef\xbb\xbfSELECT 2");
    window().openArguments({marked});
    EXPECT_FALSE(tab().editor().isModified());
    open();
    ASSERT_TRUE(DXWait::until([this] { return window().documents().count() == 2; }));
    auto &documents = window().documents();
    EXPECT_EQ(documents.path(*documents.all()[0]), path);
    // Saved with its mark, as it came.
    documents.setCurrentIndex(1);
    tab().editor().setCaretPosition(0);
    tab().editor().insertText(u"-- mine\n"_qs);
    press(Qt::Key_S, Qt::ControlModifier);
    QFile file(marked);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("\xef\xbb\xbf-- mine\nSELECT 2"));
    documents.setCurrentIndex(0);
    tab().editor().setCaretPosition(0);
    tab().editor().insertText(u"-- typed\n"_qs);

    // While nobody looks, another program writes both.
    closeWindow();
    write(folder, "saved.sql", "SELECT 3");
    write(folder, "marked.sql", "SELECT 4");
    open();
    ASSERT_TRUE(DXWait::until([this] { return window().documents().count() == 2; }));
    const QList<DXQueryTab *> tabs = window().documents().all();
    EXPECT_EQ(tabs[1]->editor().text(), u"SELECT 4"_qs);
    EXPECT_FALSE(tabs[1]->editor().isModified());
    EXPECT_EQ(tabs[0]->editor().text(), u"-- typed\nSELECT 1"_qs);
    window().documents().setCurrentIndex(0);
    EXPECT_TRUE(failures().join(u'\n').contains(u"another program"))
        << qPrintable(failures().join(u'\n'));
}

TEST_F(MainWindowTest, runsWhatWasTypedOverASelection)
{
    tab().editor().setText(u"SELECT 1"_qs);
    QTest::keyClick(&tab().editor(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&tab().editor(), u"SELECT 2"_qs);
    press(Qt::Key_F5, Qt::NoModifier);
    EXPECT_TRUE(DXWait::until([this] { return !tab().resultPages().isEmpty(); }));
    EXPECT_TRUE(becomesIdle());
    EXPECT_EQ(cells(0), u"2"_qs);
}

TEST_F(MainWindowTest, beginsAProcedureWhereTheTreeIs)
{
    const int count = window().documents().count();
    tree().setCurrentIndex({});
    press(Qt::Key_P, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(window().documents().count(), count);
    tree().setCurrentIndex(tree().model()->index(0, 0));
    press(Qt::Key_P, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(window().documents().count(), count + 1);
    EXPECT_TRUE(DXWait::until([this] { return tab().editor().text().contains(u"PROCEDURE"); }));
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
    // A tab that was opened meanwhile has a title of its own.
    open().openArguments({uri(PostgresCluster::shared())});
    ASSERT_TRUE(DXWait::until([this] { return window().documents().count() == 2; }));
    EXPECT_NE(window().documents().tabText(0), window().documents().tabText(1));
    press(Qt::Key_W, Qt::ControlModifier);
    // What is closed by hand does not come back.
    press(Qt::Key_W, Qt::ControlModifier);
    open();
    EXPECT_TRUE(DXWait::until([this] { return hasJournal(); }));
    EXPECT_EQ(window().documents().count(), 0);
}

TEST_F(MainWindowTest, staysReadableWhenItsColoursChange)
{
    open().openArguments({uri(PostgresCluster::shared()), u"/no/such/file.sql"_qs});
    ASSERT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    ASSERT_TRUE(run(u"BEGIN; SELECT 1"_qs));
    ASSERT_TRUE(DXWait::until([this] { return !failures().isEmpty(); }));
    tab().editor().setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"select"_qs);
    const auto isFound = [](const QLabel *label) { return label->text() == u"1 of 1"; };
    ASSERT_TRUE(DXWait::until(
        [&] { return std::ranges::any_of(tab().findChildren<QLabel *>(), isFound); }));
    for (const auto appearance : {Id::AppearanceDark, Id::AppearanceLight}) {
        window().actions()[appearance]->trigger();
        window().grab();
        int looked = 0;
        for (const QLabel *const label : window().findChildren<QLabel *>()) {
            if (!label->isVisible() || !label->isEnabled() || label->text().isEmpty())
                continue;
            ++looked;
            const QPalette colors = label->palette();
            EXPECT_GE(
                contrast(colors.color(label->foregroundRole()), colors.color(QPalette::Window)),
                4.5)
                << qPrintable(label->text());
        }
        EXPECT_GE(looked, 4);
    }
}

} // namespace
