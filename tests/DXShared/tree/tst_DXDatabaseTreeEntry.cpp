// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/DXDatabaseTreeEntry.h"

#include "dispatch/DXDispatch.h"
#include "support/DXWait.h"
#include "support/FakeDBC.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

namespace
{

using Reload = DXDatabaseTreeEntry::Reload;
using List = DXDatabaseTreeEntry::List;

QStringList namesOf(const DXDatabaseTreeEntry &entry)
{
    QStringList names;
    if (const auto children = entry.childEntries()) {
        for (const auto &child : *children)
            names += child->displayName();
    }
    return names;
}

class Observer final : public DXDatabaseTreeEntryDelegate
{
public:
    void databaseTreeEntryDidBeginLoading(DXDatabaseTreeEntry &entry) override
    {
        note(u"begin"_qs, entry);
    }
    void databaseTreeEntryDidFinishLoading(DXDatabaseTreeEntry &entry) override
    {
        note(u"finish"_qs, entry);
        ++finished;
    }

    QStringList events()
    {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }

    std::atomic<int> finished = 0;

private:
    void note(const QString &what, const DXDatabaseTreeEntry &entry)
    {
        const std::lock_guard lock(m_mutex);
        m_events += u"%1 on %2 thread, %3, children: %4"_qs.arg(
            what, DXDispatch::isMainThread() ? u"main"_qs : u"background"_qs,
            entry.isLoadingAsync() ? u"loading"_qs : u"idle"_qs, namesOf(entry).join(u' '));
    }

    std::mutex m_mutex;
    QStringList m_events;
};

// What its loads bring is told beforehand.
class LoadingEntry final : public DXDatabaseTreeEntry
{
public:
    struct Load
    {
        QStringList names;
        DXError error;
        std::shared_ptr<DXWait::Gate> gate;
    };

    void expect(const Load &load)
    {
        const std::lock_guard lock(m_mutex);
        m_loads += load;
    }
    bool canHaveChildren() const override { return true; }

    std::atomic<int> loads = 0;
    std::atomic<int> didLoad = 0;
    using DXDatabaseTreeEntry::adoptChild;

protected:
    bool canRefresh() const override { return true; }
    void loadEntries(DXError *error) override
    {
        ++loads;
        const Load load = nextLoad();
        if (load.gate)
            load.gate->wait();
        if (load.error) {
            DXError::report(error, load.error);
            return;
        }
        List children;
        for (const QString &name : load.names) {
            children += std::make_shared<DXDatabaseTreeEntry>();
            children.back()->setDisplayName(name);
            adoptChild(*children.back());
        }
        setDetails(load.names.join(u','));
        setChildEntries(children);
    }
    void didLoadEntries() override { ++didLoad; }

private:
    Load nextLoad()
    {
        const std::lock_guard lock(m_mutex);
        return m_loads.takeFirst();
    }

    std::mutex m_mutex;
    QList<Load> m_loads;
};

class DXDatabaseTreeEntryTest : public testing::Test
{
protected:
    void SetUp() override { node->setDelegate(observer); }

    bool waitForLoads(int count)
    {
        return DXWait::until([&] { return node->didLoad == count; });
    }
    void load(const LoadingEntry::Load &load)
    {
        node->expect(load);
        const int loaded = node->didLoad;
        EXPECT_TRUE(node->loadEntriesAsync(Reload::Force));
        EXPECT_TRUE(waitForLoads(loaded + 1));
    }

    const std::shared_ptr<Observer> observer = std::make_shared<Observer>();
    std::shared_ptr<LoadingEntry> node = std::make_shared<LoadingEntry>();
    const DXError failure{u"tree.load"_qs, 7, u"no route to host\n"_qs};
};

TEST_F(DXDatabaseTreeEntryTest, LoadsOnceUnlessForced)
{
    EXPECT_FALSE(node->childEntries());
    node->expect({{u"b"_qs, u"a"_qs}, {}, {}});
    EXPECT_TRUE(node->loadEntriesAsync(Reload::IfNeeded));
    ASSERT_TRUE(waitForLoads(1));
    EXPECT_EQ(namesOf(*node), (QStringList{u"b"_qs, u"a"_qs}));
    EXPECT_FALSE(node->loadEntriesAsync(Reload::IfNeeded));
    EXPECT_EQ(node->loads, 1);

    load({{}, {}, {}});
    EXPECT_THAT(namesOf(*node), testing::IsEmpty());
    EXPECT_TRUE(node->childEntries()) << "an empty list is a loaded one";
    EXPECT_FALSE(node->loadEntriesAsync(Reload::IfNeeded));
    load({{u"c"_qs}, {}, {}});
    EXPECT_EQ(namesOf(*node), QStringList{u"c"_qs});
}

TEST_F(DXDatabaseTreeEntryTest, TellsItsDelegateWhenLoadsBeginAndEnd)
{
    load({{u"a"_qs}, {}, {}});
    load({{}, failure, {}});
    EXPECT_THAT(observer->events(),
                testing::ElementsAre(u"begin on main thread, loading, children: "_qs,
                                     u"finish on background thread, idle, children: a"_qs,
                                     u"begin on main thread, loading, children: a"_qs,
                                     u"finish on background thread, idle, children: a"_qs));
}

TEST_F(DXDatabaseTreeEntryTest, DropsARequestWhileLoading)
{
    const auto gate = std::make_shared<DXWait::Gate>();
    node->expect({{u"a"_qs}, {}, gate});
    EXPECT_TRUE(node->loadEntriesAsync(Reload::Force));
    EXPECT_TRUE(node->isLoadingAsync());
    EXPECT_TRUE(node->loadEntriesAsync(Reload::Force));
    EXPECT_TRUE(node->loadEntriesAsync(Reload::IfNeeded));
    gate->open();
    ASSERT_TRUE(waitForLoads(1));
    EXPECT_EQ(node->loads, 1);
    EXPECT_EQ(observer->finished, 1);
    load({{u"b"_qs}, {}, {}});
    EXPECT_EQ(node->loads, 2);
}

TEST_F(DXDatabaseTreeEntryTest, ShowsAnErrorOnlyWithoutChildren)
{
    load({{}, failure, {}});
    EXPECT_EQ(namesOf(*node), QStringList{u"no route to host"_qs});
    const auto leaf = node->childEntries()->front();
    EXPECT_EQ(leaf->parent(), node);
    EXPECT_FALSE(leaf->canHaveChildren());
    EXPECT_EQ(leaf->imageName(), u"DatabaseTree-Error"_qs);
    EXPECT_TRUE(leaf->isFailureLeaf());
    EXPECT_FALSE(node->loadFailure());
    load({{}, failure.withDescription(u"timeout"_qs), {}});
    EXPECT_EQ(namesOf(*node), QStringList{u"timeout"_qs});
    load({{u"a"_qs, u"b"_qs}, {}, {}});
    EXPECT_EQ(namesOf(*node), (QStringList{u"a"_qs, u"b"_qs}));
    load({{}, failure, {}});
    EXPECT_EQ(namesOf(*node), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_EQ(node->loadFailure(), failure);
    load({{}, {}, {}});
    EXPECT_FALSE(node->loadFailure());
    load({{}, failure, {}});
    EXPECT_EQ(namesOf(*node), QStringList{u"no route to host"_qs});
}

TEST_F(DXDatabaseTreeEntryTest, LivesUntilItsLoadEnds)
{
    const auto gate = std::make_shared<DXWait::Gate>();
    node->expect({{u"a"_qs}, {}, gate});
    EXPECT_TRUE(node->loadEntriesAsync(Reload::Force));
    const std::weak_ptr<LoadingEntry> dropped = node;
    node.reset();
    EXPECT_FALSE(dropped.expired());
    gate->open();
    EXPECT_TRUE(DXWait::until([&] { return dropped.expired(); }));
    EXPECT_EQ(observer->finished, 1);
}

TEST_F(DXDatabaseTreeEntryTest, IsReadWhileItLoads)
{
    const QStringList first = {u"a"_qs, u"b"_qs, u"c"_qs};
    const QStringList second = {u"d"_qs};
    for (int round = 0; round < 200; ++round)
        node->expect({round % 2 == 0 ? first : second, {}, {}});
    for (int round = 0; round < 200; ++round) {
        ASSERT_TRUE(node->loadEntriesAsync(Reload::Force));
        while (node->didLoad == round) {
            const QStringList names = namesOf(*node);
            ASSERT_TRUE(names.isEmpty() || names == first || names == second);
            ASSERT_NE(node->details(), u"x"_qs);
        }
    }
}

TEST_F(DXDatabaseTreeEntryTest, RemovesAChildFromANewList)
{
    node->removeChild(*node);
    EXPECT_FALSE(node->childEntries());
    load({{u"a"_qs, u"b"_qs, u"c"_qs}, {}, {}});
    const auto before = node->childEntries();
    node->removeChild(*before->at(1));
    EXPECT_EQ(namesOf(*node), (QStringList{u"a"_qs, u"c"_qs}));
    EXPECT_EQ(before->size(), 3);
    node->removeChild(*before->at(1));
    EXPECT_EQ(namesOf(*node), (QStringList{u"a"_qs, u"c"_qs}));
}

TEST_F(DXDatabaseTreeEntryTest, HandsDownWhatChildrenNeed)
{
    const auto details = std::make_shared<FakeDBC>();
    details->setDatabase(u"shop"_qs);
    node->setDatabaseConnectionDetails(details);
    DXDatabaseTreeEntry child;
    node->adoptChild(child);
    EXPECT_EQ(child.parent(), node);
    EXPECT_EQ(child.delegate(), observer);
    ASSERT_TRUE(child.databaseConnectionDetails());
    EXPECT_NE(child.databaseConnectionDetails(), details);
    EXPECT_EQ(child.databaseConnectionDetails()->database(), u"shop"_qs);
}

TEST_F(DXDatabaseTreeEntryTest, NeverLoadsALeaf)
{
    const auto leaf = std::make_shared<DXDatabaseTreeEntry>();
    leaf->setDelegate(observer);
    EXPECT_FALSE(leaf->loadEntriesAsync(Reload::Force));
    EXPECT_FALSE(leaf->childEntries());
    EXPECT_THAT(observer->events(), testing::IsEmpty());
}

} // namespace
