// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQueryLoader.h"

#include "dispatch/DXDispatch.h"
#include "query/StaticQueryLoader.h"
#include "support/DXWait.h"
#include "support/FakeDBC.h"
#include "support/PrintQt.h"

#include <atomic>
#include <gmock/gmock.h>

namespace
{

class Receiver final : public DXQueryLoaderDelegate
{
public:
    void queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query) override
    {
        from = &loader;
        text = query;
        onMainThread = DXDispatch::isMainThread();
        ++received;
    }

    DXQueryLoader *from = nullptr;
    QString text;
    bool onMainThread = false;
    std::atomic<int> received = 0;
};

// Waits for its gate in the background, then delivers the database's name.
class SlowLoader final : public DXQueryLoader
{
public:
    explicit SlowLoader(DXWait::Gate &gate)
        : m_gate(gate)
    { }
    void beginLoadingQuery(const DabroDBC &details) override
    {
        deliverFromBackground(
            [this, database = details.database()] { return m_gate.wait() ? database : QString(); });
    }

private:
    DXWait::Gate &m_gate;
};

TEST(DXQueryLoader, DeliversAFixedTextOncePerCall)
{
    const auto receiver = std::make_shared<Receiver>();
    const auto loader = std::make_shared<StaticQueryLoader>(u"SELECT 1;"_qs);
    loader->setDelegate(receiver);
    for (int call = 1; call <= 2; ++call) {
        loader->beginLoadingQuery(FakeDBC());
        EXPECT_EQ(receiver->received, call);
    }
    EXPECT_EQ(receiver->text, u"SELECT 1;"_qs);
    EXPECT_EQ(receiver->from, loader.get());
    EXPECT_TRUE(receiver->onMainThread);
}

TEST(DXQueryLoader, DeliversFromTheBackgroundThoughItsOwnerLetGo)
{
    const auto receiver = std::make_shared<Receiver>();
    DXWait::Gate gate;
    auto loader = std::make_shared<SlowLoader>(gate);
    loader->setDelegate(receiver);
    FakeDBC details;
    details.setDatabase(u"shop"_qs);
    loader->beginLoadingQuery(details);
    EXPECT_EQ(receiver->received, 0);
    const std::weak_ptr<DXQueryLoader> dropped = loader;
    loader.reset();
    gate.open();
    EXPECT_TRUE(DXWait::until([&] { return receiver->received == 1; }));
    EXPECT_EQ(receiver->text, u"shop"_qs);
    EXPECT_FALSE(receiver->onMainThread);
    EXPECT_TRUE(DXWait::until([&] { return dropped.expired(); }));
}

TEST(DXQueryLoader, DropsTheTextWhenTheReceiverIsGone)
{
    DXWait::Gate gate;
    auto loader = std::make_shared<SlowLoader>(gate);
    auto receiver = std::make_shared<Receiver>();
    const std::weak_ptr<DXQueryLoader> dropped = loader;
    loader->setDelegate(receiver);
    loader->beginLoadingQuery(FakeDBC());
    loader.reset();
    receiver.reset();
    gate.open();
    EXPECT_TRUE(DXWait::until([&] { return dropped.expired(); }));
}

} // namespace
