// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"
#include "desktop/Documents.h"
#include "desktop/MainWindow.h"
#include "support/DXWait.h"
#include "support/Widgets.h"
#include "ui/tree/DXDatabaseTreeModel.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QLineEdit>
#include <QTest>
#include <QTreeView>

namespace
{

/// The catalogue at the side of the window, of a table shop.browsed (x, y).
class TreeSideTest : public DesktopTest
{
protected:
    TreeSideTest()
    {
        PostgresCluster::shared().psql(
            u"DROP SCHEMA IF EXISTS shop CASCADE; CREATE SCHEMA shop; "
            "CREATE TABLE shop.browsed (x int, y int); CREATE TABLE shop.other ()"_qs);
        open().openArguments({uri(PostgresCluster::shared())});
        EXPECT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    }

    /// Follows names from the top of the tree that is shown, unfolding each; waits for them.
    QModelIndex find(const QStringList &names) const
    {
        QModelIndex index;
        EXPECT_TRUE(DXWait::until([&] {
            index = findNow(names);
            return index.isValid();
        })) << qPrintable(names.join(u'/'));
        return index;
    }
    QModelIndex findNow(const QStringList &names) const
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
    void search(const QString &text) const
    {
        auto *const field = window().tree().findChild<QLineEdit *>();
        field->setFocus();
        QTest::keySequence(field, QKeySequence::SelectAll);
        QTest::keyClicks(field, text);
    }
    int loading() const
    {
        return static_cast<const DXDatabaseTreeModel &>(*tree().model()).loadingCount();
    }

    const QString server = PostgresCluster::shared().socketFolder();
};

TEST_F(TreeSideTest, unfoldsWhatASearchFound)
{
    find({server, u"postgres"_qs});
    search(u"BROWSED"_qs);
    find({server, u"postgres"_qs, u"shop.browsed"_qs, u"y"_qs});
    EXPECT_TRUE(DXWait::until([this] { return loading() == 0; }));
}

} // namespace
