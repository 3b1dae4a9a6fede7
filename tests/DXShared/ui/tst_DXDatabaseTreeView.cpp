// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DXWait.h"
#include "tree/DXMenu.h"
#include "ui/DXDatabaseTreeModel.h"
#include "ui/DXDatabaseTreeView.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
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
        menu.addItem(u"Count"_qs, [this] { ++chosen; });
        menu.addSeparator();
        menu.addItem(u"Later"_qs, {});
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
            if (child->displayName().contains(search))
                hits.append(std::make_shared<Branch>(child->displayName()));
        }
        copy->setChildEntries(hits);
        return hits.isEmpty() ? nullptr : copy;
    }

    List next;
    DXError nextError;
    int chosen = 0;
    int doubleClicks = 0;
    int downs = 0;

private:
    bool canRefresh() const override { return true; }
    void loadEntries(DXError *error) override
    {
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
    root->nextError = {};
    root->next = {branch("Tables")};
    view.doRefreshDatabaseTreeEntry(view.currentlySelectedDatabaseTreeEntry());
    EXPECT_TRUE(becomes(u"shop\n Tables\n"_qs)) << qPrintable(shown());
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
    QTest::keyClicks(field, u"nothing"_qs);
    EXPECT_TRUE(becomes(QString())) << qPrintable(shown());
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(becomes(u"shop\n orders\n order_items\n people\n"_qs)) << qPrintable(shown());
}

} // namespace
