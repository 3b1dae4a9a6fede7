// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DXWait.h"
#include "support/Widgets.h"
#include "tree/ColumnDetailsTableCellView.h"
#include "tree/DXMenu.h"
#include "ui/DXFailureList.h"
#include "ui/DXToolTip.h"
#include "ui/tree/DXDatabaseTreeModel.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace
{

/// A node whose children are what the test says, found in the background.
class Branch final : public DXDatabaseTreeEntry
{
public:
    explicit Branch(const QString &name) { setDisplayName(name); }

    bool canHaveChildren() const override { return true; }
    DXMenu menu() override
    {
        DXMenu menu(u"Root"_qs);
        menu.addItem({.title = u"Count"_qs,
                      .action = [this] { ++chosen; },
                      .submenu = {},
                      .key = DXMenu::Key::Drop});
        menu.addSeparator();
        menu.addItem(
            {.title = u"Later"_qs, .action = {}, .submenu = {}, .key = DXMenu::Key::Rename});
        DXMenu script(u"Script as"_qs);
        script.addItem(u"CREATE to"_qs, [this] { chosen += 10; });
        menu.addSubmenu(script);
        return menu;
    }
    void onDoubleClicked() override { ++doubleClicks; }
    void cmdDown() override { ++downs; }
    std::shared_ptr<DXDatabaseTreeEntry> copyWithSearchResults(const QString &search) const override
    {
        auto copy = std::make_shared<Branch>(displayName());
        const auto children = childEntries();
        List hits;
        for (const auto &child : *children) {
            if (!child->displayName().contains(search))
                continue;
            const auto hit = std::make_shared<Branch>(child->displayName());
            hit->next = static_cast<const Branch &>(*child).next;
            hit->gate = static_cast<const Branch &>(*child).gate;
            hit->setDelegate(delegate());
            hits.append(hit);
        }
        copy->setChildEntries(hits);
        return hits.isEmpty() ? nullptr : copy;
    }

    using DXDatabaseTreeEntry::setChildEntries;
    List next;
    DXError nextError;
    /// A load waits for it to open.
    std::shared_ptr<DXWait::Gate> gate;
    int chosen = 0;
    int doubleClicks = 0;
    int downs = 0;

private:
    bool canRefresh() const override { return true; }
    void loadEntries(DXError *error) override
    {
        if (gate)
            gate->wait();
        if (nextError) {
            DXError::report(error, nextError);
            return;
        }
        for (const auto &child : next) {
            child->setParent(weak_from_this());
            child->setDelegate(delegate());
        }
        setChildEntries(next);
    }
};

/// One of several of its name, which its cell tells apart.
class Overload final : public DXDatabaseTreeEntry
{
public:
    explicit Overload(const QString &arguments)
        : m_arguments(arguments)
    {
        setDisplayName(u"shop.total"_qs);
        setDetails(arguments);
    }
    QString tableCellIdentifier() const override { return u"ColumnDetailsTableCellView"_qs; }
    void prepareCell(ColumnDetailsTableCellView &cell) const override
    {
        cell.columnNameTextField = u"total"_qs;
        cell.columnDetailsTextField = u'(' + m_arguments + u')';
    }

private:
    const QString m_arguments;
};

class NoWindow final : public DXDatabaseTreeViewControllerDelegate
{
    QWidget *targetWindow() override { return nullptr; }
    void addNewQueryTab(const QString &, const std::shared_ptr<DabroDBC> &, QueryTab) override { }
    void addNewQueryTabWithLoader(const std::shared_ptr<DXQueryLoader> &,
                                  const std::shared_ptr<DabroDBC> &, QueryTab) override
    { }
    void sendScript(const std::shared_ptr<DXQueryLoader> &, const std::shared_ptr<DabroDBC> &,
                    ScriptDestination) override
    { }
    void alterTableNamed(const QString &, const QString &,
                         const std::shared_ptr<DabroDBC> &) override
    { }
    void openConnectionDialog(const std::shared_ptr<DabroDBC> &) override { }
    void disconnectFrom(const std::shared_ptr<DabroDBC> &) override { }
    void importInto(const std::shared_ptr<DabroDBC> &) override { }
    void exportTableAsCSV(const QString &, const std::shared_ptr<DabroDBC> &) override { }
    void beep() override { }
};

class DXDatabaseTreeViewTest : public testing::Test
{
protected:
    DXDatabaseTreeViewTest()
    {
        view.resize(260, 400);
        view.show();
    }

    static std::shared_ptr<Branch> branch(const char *name)
    {
        return std::make_shared<Branch>(QString::fromUtf8(name));
    }
    /// The names in the tree that is shown, one level a blank.
    QString shown() const
    {
        QString text;
        list(*tree()->model(), {}, QString(), text);
        return text;
    }
    QTreeView *tree() const
    {
        const auto trees = view.findChildren<QTreeView *>();
        return *std::find_if(trees.begin(), trees.end(),
                             [](const QTreeView *tree) { return tree->isVisible(); });
    }
    const DXDatabaseTreeModel &model() const
    {
        return static_cast<const DXDatabaseTreeModel &>(*tree()->model());
    }
    bool becomes(const QString &text) const
    {
        return DXWait::until([&] { return shown() == text; });
    }

    NoWindow window;
    DXDatabaseTreeView view{window};

private:
    static void list(const QAbstractItemModel &model, const QModelIndex &parent,
                     const QString &indent, QString &text)
    {
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex index = model.index(row, 0, parent);
            text += indent + index.data().toString() + u'\n';
            list(model, index, indent + u' ', text);
        }
    }
};

TEST_F(DXDatabaseTreeViewTest, keepsWhatALoadDidNotChange)
{
    const QAbstractItemModelTester tester(tree()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto root = branch("shop");
    const auto tables = branch("Tables");
    tables->next = {branch("orders"), branch("items")};
    root->next = {tables, branch("Views")};
    view.addRoot(root);
    EXPECT_TRUE(becomes(u"shop\n Tables\n Views\n"_qs)) << qPrintable(shown());
    tree()->expand(model().indexOf(*tables));
    EXPECT_TRUE(becomes(u"shop\n Tables\n  orders\n  items\n Views\n"_qs)) << qPrintable(shown());

    root->next = {branch("Schemas"), tables, branch("Types"), branch("Functions")};
    view.doRefreshDatabaseTreeEntry(root);
    EXPECT_TRUE(becomes(u"shop\n Schemas\n Tables\n  orders\n  items\n Types\n Functions\n"_qs))
        << qPrintable(shown());
    EXPECT_TRUE(tree()->isExpanded(model().indexOf(*tables)));

    root->next = {};
    view.doRefreshDatabaseTreeEntry(root);
    EXPECT_TRUE(becomes(u"shop\n"_qs)) << qPrintable(shown());
    view.removeRoot(root);
    EXPECT_EQ(shown(), QString());
}

TEST_F(DXDatabaseTreeViewTest, showsWhyNothingWasLoadedAndCopiesIt)
{
    const auto root = branch("shop");
    root->nextError = DXError(u"d"_qs, 1, u"no route to <b>db1</b>"_qs);
    view.addRoot(root);
    ASSERT_TRUE(DXWait::until([&] { return shown().contains(u"no route"); }));
    tree()->setCurrentIndex(tree()->model()->index(0, 0, model().indexOf(*root)));
    QTest::keyClick(tree(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(u"no route to <b>db1</b>"));
    const auto menu = view.createMenu(*view.currentlySelectedDatabaseTreeEntry());
    ASSERT_TRUE(menu);
    QGuiApplication::clipboard()->clear();
    menu->actions().at(0)->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"no route to <b>db1</b>"_qs);
    root->nextError = {};
    root->next = {branch("Tables")};
    menu->actions().at(1)->trigger();
    EXPECT_TRUE(becomes(u"shop\n Tables\n"_qs)) << qPrintable(shown());
}

TEST_F(DXDatabaseTreeViewTest, tellsOfAFailedRefreshUntilOneWorks)
{
    const auto root = branch("shop");
    root->next = {branch("Tables")};
    view.addRoot(root);
    ASSERT_TRUE(becomes(u"shop\n Tables\n"_qs)) << qPrintable(shown());
    const QModelIndex index = model().indexOf(*root);
    const auto failure = [&] { return index.data(DXDatabaseTreeModel::FailureRole).toString(); };
    EXPECT_TRUE(failure().isNull());

    root->nextError = DXError(u"d"_qs, 1, u"no route to db1\n"_qs);
    view.doRefreshDatabaseTreeEntry(root);
    EXPECT_TRUE(DXWait::until([&] { return failure() == u"no route to db1"; }));
    EXPECT_EQ(shown(), u"shop\n Tables\n"_qs);
    const QString told = u"shop\nLoading failed: no route to db1"_qs;
    EXPECT_EQ(index.data(Qt::AccessibleTextRole), told);
    EXPECT_EQ(index.data(Qt::ToolTipRole), DXToolTip::plain(told));
    const auto menu = view.createMenu(*root);
    const auto actions = menu->actions();
    EXPECT_EQ(actions.at(actions.size() - 2)->text(), u"Copy error"_qs);
    const auto lists = [this] { return view.failures().headlines().join(u'\n'); };
    EXPECT_TRUE(DXWait::until([&] { return lists().contains(u"\"shop\""); }))
        << qPrintable(lists());

    root->nextError = {};
    Widgets::click<QPushButton>(&view, u"Try again"_qs);
    EXPECT_TRUE(DXWait::until([&] { return failure().isNull(); }));
    EXPECT_EQ(index.data(Qt::ToolTipRole), DXToolTip::plain(u"shop"_qs));
    EXPECT_TRUE(view.failures().isEmpty());

    root->nextError = DXError(u"d"_qs, 1, u"timeout"_qs);
    view.doRefreshDatabaseTreeEntry(root);
    EXPECT_TRUE(DXWait::until([&] { return !view.failures().isEmpty(); }));
    view.removeRoot(root);
    EXPECT_TRUE(view.failures().isEmpty());
}

TEST_F(DXDatabaseTreeViewTest, passesOnWhatTheUserDoes)
{
    const auto root = branch("shop");
    view.addRoot(root);
    const QModelIndex index = model().indexOf(*root);
    tree()->setCurrentIndex(index);
    EXPECT_EQ(view.currentlySelectedDatabaseTreeEntry(), root);
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualRect(index).center());
    QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualRect(index).center());
    QTest::keyClick(tree(), Qt::Key_Return);
    EXPECT_EQ(root->doubleClicks, 1);
    EXPECT_EQ(root->downs, 1);
    const std::unique_ptr<QMimeData> dragged(tree()->model()->mimeData({index}));
    EXPECT_EQ(dragged->text(), u"shop"_qs);

    const auto menu = view.createMenu(*root);
    ASSERT_EQ(menu->actions().size(), 4);
    menu->actions()[0]->trigger();
    EXPECT_TRUE(menu->actions()[1]->isSeparator());
    EXPECT_FALSE(menu->actions()[2]->isEnabled());
    menu->actions()[3]->menu()->actions()[0]->trigger();
    EXPECT_EQ(root->chosen, 11);
    EXPECT_EQ(menu->actions()[0]->shortcut(), QKeySequence(Qt::Key_Delete));
    QTest::keyClick(tree(), Qt::Key_Delete);
    QTest::keyClick(tree(), Qt::Key_F2);
    EXPECT_EQ(root->chosen, 12);
    view.deselectAll();
    QTest::keyClick(tree(), Qt::Key_Delete);
    EXPECT_EQ(root->chosen, 12);
}

TEST_F(DXDatabaseTreeViewTest, staysUnfoldedAndSelectedWhenALoadBringsOthers)
{
    const auto root = branch("shop");
    const auto makeTables = [](const QStringList &names) {
        const auto tables = branch("Tables");
        for (const QString &name : names) {
            const auto table = std::make_shared<Branch>(name);
            table->next = {branch("id")};
            tables->next.append(table);
        }
        return tables;
    };
    const auto refresh = [&](const QStringList &names) {
        root->next = {branch("Views"), makeTables(names)};
        view.doRefreshDatabaseTreeEntry(root);
    };
    const auto indexOf = [&](const QStringList &path) {
        QModelIndex index = model().indexOf(*root);
        for (const QString &name : path) {
            const auto matches = model().match(model().index(0, 0, index), Qt::DisplayRole, name, 1,
                                               Qt::MatchExactly);
            index = matches.isEmpty() ? QModelIndex() : matches.first();
        }
        return index;
    };
    root->next = {makeTables({u"items"_qs, u"orders"_qs})};
    view.addRoot(root);
    ASSERT_TRUE(becomes(u"shop\n Tables\n"_qs));
    tree()->expand(indexOf({u"Tables"_qs}));
    ASSERT_TRUE(becomes(u"shop\n Tables\n  items\n  orders\n"_qs));
    tree()->expand(indexOf({u"Tables"_qs, u"orders"_qs}));
    const QString unfolded = u"  orders\n   id\n"_qs;
    ASSERT_TRUE(becomes(u"shop\n Tables\n  items\n"_qs + unfolded));
    tree()->setCurrentIndex(indexOf({u"Tables"_qs, u"orders"_qs, u"id"_qs}));

    const auto before = view.currentlySelectedDatabaseTreeEntry();
    refresh({u"a"_qs, u"items"_qs, u"orders"_qs});
    EXPECT_TRUE(becomes(u"shop\n Views\n Tables\n  a\n  items\n"_qs + unfolded))
        << qPrintable(shown());
    const auto after = view.currentlySelectedDatabaseTreeEntry();
    ASSERT_TRUE(after);
    EXPECT_NE(after, before);
    EXPECT_EQ(after->displayName(), u"id"_qs);

    // What the user does meanwhile counts.
    tree()->collapse(indexOf({u"Tables"_qs, u"orders"_qs}));
    view.deselectAll();
    refresh({u"orders"_qs});
    EXPECT_TRUE(becomes(u"shop\n Views\n Tables\n  orders\n"_qs)) << qPrintable(shown());
    EXPECT_FALSE(view.currentlySelectedDatabaseTreeEntry());
    view.addRoot(branch("other"));
    EXPECT_TRUE(becomes(u"shop\n Views\n Tables\n  orders\nother\n"_qs)) << qPrintable(shown());
}

TEST_F(DXDatabaseTreeViewTest, showsWhatACellIsFilledWith)
{
    const auto root = branch("shop");
    const auto overloads = [] {
        return DXDatabaseTreeEntry::List{std::make_shared<Overload>(u"integer"_qs),
                                         std::make_shared<Overload>(u"text"_qs)};
    };
    root->next = overloads();
    view.addRoot(root);
    ASSERT_TRUE(becomes(u"shop\n total\n total\n"_qs)) << qPrintable(shown());
    const QModelIndex second = model().index(1, 0, model().indexOf(*root));
    EXPECT_EQ(second.data(DXDatabaseTreeModel::DetailsRole), u"(text)"_qs);
    EXPECT_EQ(second.data(Qt::ToolTipRole), DXToolTip::plain(u"shop.total (text)"_qs));
    EXPECT_EQ(second.data(Qt::AccessibleTextRole), u"shop.total (text)"_qs);

    tree()->setCurrentIndex(second);
    const auto before = view.currentlySelectedDatabaseTreeEntry();
    root->next = overloads();
    view.doRefreshDatabaseTreeEntry(root);
    ASSERT_TRUE(
        DXWait::until([&] { return view.currentlySelectedDatabaseTreeEntry() == root->next[1]; }));
    EXPECT_NE(view.currentlySelectedDatabaseTreeEntry(), before);
}

TEST_F(DXDatabaseTreeViewTest, selectsNothingInPlaceOfWhatWasRemoved)
{
    const auto root = branch("shop");
    root->next = {branch("items"), branch("orders")};
    view.addRoot(root);
    ASSERT_TRUE(becomes(u"shop\n items\n orders\n"_qs));
    tree()->setCurrentIndex(model().index(0, 0, model().indexOf(*root)));
    root->removeChild(*view.currentlySelectedDatabaseTreeEntry());
    view.deselectAll();
    view.reloadData();
    EXPECT_TRUE(becomes(u"shop\n orders\n"_qs)) << qPrintable(shown());
    EXPECT_FALSE(view.currentlySelectedDatabaseTreeEntry());
}

TEST_F(DXDatabaseTreeViewTest, showsTheLastSearchOnly)
{
    const auto root = branch("shop");
    root->next = {branch("orders"), branch("order_items"), branch("people")};
    view.addRoot(root);
    ASSERT_TRUE(becomes(u"shop\n orders\n order_items\n people\n"_qs));
    auto *const field = view.findChild<QLineEdit *>();
    field->setFocus();
    QTest::keyClicks(field, u"order_"_qs);
    EXPECT_TRUE(becomes(u"shop\n order_items\n"_qs)) << qPrintable(shown());
    // Another look at the server found more.
    auto more = *root->childEntries();
    more.append(branch("order_notes"));
    root->setChildEntries(more);
    root->delegate()->databaseTreeEntryDidUpdateSearchResults(*root);
    EXPECT_TRUE(becomes(u"shop\n order_items\n order_notes\n"_qs)) << qPrintable(shown());
    root->removeChild(*more.last());
    QTest::keyClicks(field, u"nothing"_qs);
    EXPECT_TRUE(becomes(QString())) << qPrintable(shown());
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(becomes(u"shop\n orders\n order_items\n people\n"_qs)) << qPrintable(shown());
}

TEST_F(DXDatabaseTreeViewTest, unfoldsWhatASearchFound)
{
    const auto root = branch("shop");
    const auto orders = branch("orders");
    orders->next = {branch("id"), branch("note")};
    orders->gate = std::make_shared<DXWait::Gate>();
    root->next = {orders, branch("people")};
    view.addRoot(root);
    ASSERT_TRUE(becomes(u"shop\n orders\n people\n"_qs));
    QTest::keyClicks(view.findChild<QLineEdit *>(), u"ord"_qs);
    ASSERT_TRUE(becomes(u"shop\n orders\n"_qs)) << qPrintable(shown());
    tree()->expand(model().index(0, 0, model().index(0, 0)));
    EXPECT_TRUE(DXWait::until([this] { return model().loadingCount() == 1; }));
    orders->gate->open();
    EXPECT_TRUE(becomes(u"shop\n orders\n  id\n  note\n"_qs)) << qPrintable(shown());
    // Nothing turns any more.
    EXPECT_EQ(model().loadingCount(), 0);
}

} // namespace
