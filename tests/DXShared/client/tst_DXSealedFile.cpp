// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/secrets/DXSealedFile.h"
#include "support/PrintQt.h"

#include <QDir>
#include <QTemporaryDir>

#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <sodium.h>

namespace
{

TEST(DXSealedFile, initialisesTheLibraryBeforeItIsUsed)
{
    const DXSealedFile file{QString()};
    EXPECT_EQ(sodium_init(), 1) << "Nobody had initialised it";
}

TEST(DXSealedFile, losesNoChangeOfThoseWhoWriteAtTheSameTime)
{
    const QTemporaryDir folder;
    constexpr int writers = 4;
    constexpr int rounds = 6;
    const auto write = [&folder](int writer) {
        const DXSealedFile file(folder.path());
        for (int round = 0; round < rounds; ++round) {
            DXError error;
            EXPECT_TRUE(file.update(
                u"all"_qs, [](const QString &text) { return text + u'x'; }, &error))
                << qPrintable(error.description());
            EXPECT_TRUE(
                file.write(u"own %1"_qs.arg(writer), round % 2 ? QString() : u"here"_qs, &error));
            EXPECT_FALSE(file.read(u"all"_qs, &error).isNull());
            EXPECT_FALSE(error) << qPrintable(error.description());
        }
    };
    {
        std::vector<std::jthread> threads;
        threads.reserve(writers);
        for (int writer = 0; writer < writers; ++writer)
            threads.emplace_back(write, writer);
    }
    const DXSealedFile file(folder.path());
    EXPECT_EQ(file.read(u"all"_qs, nullptr).size(), writers * rounds);
    // Nothing stays of what was all removed.
    EXPECT_TRUE(file.write(u"all"_qs, QString(), nullptr));
    EXPECT_FALSE(QDir(folder.path()).exists(u"secrets"_qs));
    EXPECT_TRUE(file.write(u"all"_qs, u"again"_qs, nullptr));
    EXPECT_EQ(file.read(u"all"_qs, nullptr), u"again"_qs);
}

} // namespace
