// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/DXDatabaseTreeContextHelper.h"

#include "support/DXWait.h"
#include "support/FakeDBC.h"
#include "support/PrintQt.h"
#include "support/TreeWindow.h"
#include "tree/DXDatabaseTreeEntry.h"

#include <gmock/gmock.h>

namespace
{

// Offers every menu item that nodes share.
class Entry final : public DXDatabaseTreeEntry
{
public:
    DXMenu menu() override
    {
        DXMenu menu(u"Root"_qs);
        menu.addItem(newQueryMenuItem());
        menu.addItem(disconnectMenuItem());
        menu.addSeparator();
        menu.addItem(importMenuItem());
        menu.addItem(refreshMenuItem());
        menu.addSubmenu(createScriptToOptionsMenu(u"CREATE to"_qs, nullptr));
        return menu;
    }
    bool canHaveChildren() const override { return true; }

    std::atomic<int> loads = 0;

protected:
    bool canRefresh() const override { return true; }
    void loadEntries(DXError *) override { ++loads; }
};

// The helper of a driver that imports.
class ImportingHelper final : public DXDatabaseTreeContextHelper
{
public:
    using DXDatabaseTreeContextHelper::DXDatabaseTreeContextHelper;
    bool canImportInto(const DXDatabaseTreeEntry &) const override { return true; }
};

void chooseAll(const std::vector<DXMenu::Item> &items)
{
    for (const DXMenu::Item &item : items) {
        if (item.action)
            item.action();
        chooseAll(item.submenu);
    }
}

QStringList titlesOf(const std::vector<DXMenu::Item> &items)
{
    QStringList titles;
    for (const DXMenu::Item &item : items) {
        EXPECT_EQ(item.isSeparator(), item.title.isEmpty());
        titles += item.isSeparator() ? u"-"_qs : item.title;
    }
    return titles;
}

class DXDatabaseTreeContextHelperTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto details = std::make_shared<FakeDBC>();
        details->setDatabase(u"shop"_qs);
        root->setContextHelper(helper);
        entry->setParent(root);
        entry->setDatabaseConnectionDetails(details);
    }

    TreeWindow window;
    std::shared_ptr<DXDatabaseTreeContextHelper> helper = std::make_shared<ImportingHelper>(window);
    const std::shared_ptr<DXDatabaseTreeEntry> root = std::make_shared<DXDatabaseTreeEntry>();
    std::shared_ptr<Entry> entry = std::make_shared<Entry>();
};

TEST_F(DXDatabaseTreeContextHelperTest, ServesTheMenusOfAllNodesBelowTheRoot)
{
    const DXMenu menu = entry->menu();
    EXPECT_EQ(titlesOf(menu.items()), (QStringList{u"New query"_qs, u"Disconnect"_qs, u"-"_qs,
                                                   u"Import"_qs, u"Refresh"_qs, u"CREATE to"_qs}));
    EXPECT_EQ(titlesOf(menu.items().back().submenu),
              (QStringList{u"New query tab"_qs, u"Clipboard"_qs, u"File…"_qs}));
    chooseAll(menu.items());
    EXPECT_EQ(window.asked, (QStringList{u"tab shop"_qs, u"disconnect shop"_qs, u"import shop"_qs,
                                         u"load shop"_qs, u"clipboard shop"_qs, u"file shop"_qs}));
    EXPECT_TRUE(DXWait::until([&] { return entry->loads == 1; }));
}

TEST_F(DXDatabaseTreeContextHelperTest, DisablesTheImportThatADriverLacks)
{
    helper = std::make_shared<DXDatabaseTreeContextHelper>(window);
    root->setContextHelper(helper);
    EXPECT_FALSE(entry->importMenuItem().action);
}

TEST_F(DXDatabaseTreeContextHelperTest, LeavesMenusOfDroppedNodesWithoutEffect)
{
    const DXMenu menu = entry->menu();
    helper.reset();
    EXPECT_FALSE(entry->contextHelper());
    chooseAll(menu.items());
    entry.reset();
    chooseAll(menu.items());
    EXPECT_THAT(window.asked, testing::IsEmpty());
}

TEST_F(DXDatabaseTreeContextHelperTest, ForwardsActionsWithTheConnectionOfTheNode)
{
    helper->addQueryTab(*entry, u"SELECT 1"_qs);
    helper->executeQueryTab(*entry, u"SELECT 2"_qs);
    helper->addQueryTabWithQueryLoader(*entry, {});
    helper->addAndExecuteQueryTabWithQueryLoader(*entry, {});
    helper->openConnectionDialog(*entry);
    helper->exportTableAsCSV(*entry, u"sales.\"Orders\""_qs);
    helper->beep();
    EXPECT_EQ(window.asked,
              (QStringList{u"tab shop SELECT 1"_qs, u"run shop SELECT 2"_qs, u"load shop"_qs,
                           u"load and run shop"_qs, u"connection shop"_qs,
                           u"export shop sales.\"Orders\""_qs, u"beep"_qs}));
}

} // namespace
