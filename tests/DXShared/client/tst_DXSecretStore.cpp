// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/secrets/DXSecretStore.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "support/SavedConnections.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace
{

TEST(DXSecretStore, keepsTheLastOfManyWrites)
{
    const QTemporaryDir folder;
    DXSecretStore &store = SavedConnections::storeIn(folder.path());
    constexpr int writes = 30;
    int done = 0;
    for (int number = 1; number <= writes; ++number)
        store.write(u"key"_qs, QString::number(number), [&done](const DXError &) { ++done; });
    EXPECT_TRUE(DXWait::until([&done] { return done == writes; }));
    QString text;
    store.read(u"key"_qs, [&text](const DXSecretStore::Answer &answer) { text = answer.text; });
    EXPECT_TRUE(DXWait::until([&text] { return !text.isNull(); }));
    EXPECT_EQ(text, QString::number(writes));
}

TEST(DXSecretStore, hasMadeEveryChangeInOrderWhenItFinishes)
{
    const QTemporaryDir folder;
    DXSecretStore &store = SavedConnections::storeIn(folder.path());
    QString expected;
    for (const QChar letter : u"abcdefgh"_qs) {
        expected += letter;
        store.changeSealed(
            u"key"_qs, [letter](const QString &text) { return text + letter; },
            [](const DXError &) {});
    }
    store.finish();
    EXPECT_EQ(DXSealedFile(folder.path()).read(u"key"_qs, nullptr), expected);
}

TEST(DXSecretStore, locksOutOtherStoresOfItsFolder)
{
    const QTemporaryDir folder;
    DXSecretStore::Lock held;
    SavedConnections::storeIn(folder.path())
        .lock([&held](const DXSecretStore::Lock &lock, const DXError &) { held = lock; });
    ASSERT_TRUE(DXWait::until([&held] { return held != nullptr; }));

    auto &impatient = SavedConnections::keptUntilTheEnd<DXSecretStore>(
        folder.path(), std::chrono::milliseconds(1));
    DXError error;
    impatient.lock([&error](const DXSecretStore::Lock &lock, const DXError &refusal) {
        EXPECT_FALSE(lock);
        error = refusal;
    });
    EXPECT_TRUE(DXWait::until([&error] { return bool(error); }));

    DXSecretStore::Lock next;
    SavedConnections::storeIn(folder.path())
        .lock([&next](const DXSecretStore::Lock &lock, const DXError &) { next = lock; });
    held.reset();
    EXPECT_TRUE(DXWait::until([&next] { return next != nullptr; }));
}

} // namespace
