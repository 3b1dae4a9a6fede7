// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXRowStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace
{

using Row = std::vector<std::optional<std::string>>;

void append(DXRowStore &store, const Row &row)
{
    store.appendRow([&row](quint32 column) {
        const auto &text = row[column];
        return text ? DXRowStore::Cell{text->data(), static_cast<qsizetype>(text->size())}
                    : DXRowStore::Cell{};
    });
}

std::optional<std::string> read(const DXRowStore &store, qsizetype row, quint32 column)
{
    const DXRowStore::Cell cell = store.cell(row, column);
    if (cell.isNull())
        return std::nullopt;
    return std::string(cell.data, static_cast<std::size_t>(cell.size));
}

// Rows of every shape: NULL, empty, small, and cells far larger than a chunk in every column, so
// that rows move between chunks with any number of cells written.
TEST(DXRowStore, givesBackWhatWasAppendedAcrossChunks)
{
    constexpr quint32 columns = 5;
    std::mt19937 random(1);
    std::vector<Row> rows;
    DXRowStore store(columns);
    for (int r = 0; r < 3000; ++r) {
        Row row;
        for (quint32 column = 0; column < columns; ++column) {
            const auto kind = random() % 100;
            if (kind < 20)
                row.emplace_back(std::nullopt);
            else
                row.emplace_back(std::string(kind == 99 ? random() % 300'000 : random() % 40,
                                             static_cast<char>('a' + r % 26)));
        }
        rows.push_back(row);
        append(store, row);
        if (r % 7 == 0)
            store.publish();
    }
    store.publish();
    ASSERT_EQ(store.rowCount(), 3000);
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (quint32 column = 0; column < columns; ++column)
            ASSERT_EQ(read(store, static_cast<qsizetype>(r), column), rows[r][column])
                << r << " " << column;
}

TEST(DXRowStore, showsOnlyWhatIsPublished)
{
    DXRowStore store(1);
    append(store, {"a"});
    EXPECT_EQ(store.rowCount(), 0);
    EXPECT_TRUE(store.cell(0, 0).isNull());
    store.publish();
    EXPECT_EQ(read(store, 0, 0), "a");
    EXPECT_TRUE(store.cell(0, 1).isNull());
    EXPECT_TRUE(store.cell(-1, 0).isNull());

    DXRowStore withoutColumns(0);
    append(withoutColumns, {});
    withoutColumns.publish();
    EXPECT_EQ(withoutColumns.rowCount(), 1);
}

TEST(DXRowStore, isReadWhileItGrows)
{
    DXRowStore store(2);
    std::thread reader([&store] {
        for (qsizetype seen = 0; seen < 50'000; seen = store.rowCount()) {
            if (seen > 0) {
                EXPECT_EQ(read(store, seen - 1, 0), std::to_string(seen - 1));
                EXPECT_EQ(read(store, seen / 2, 1),
                          std::string(static_cast<std::size_t>(seen / 2 % 90), 'x'));
            }
        }
    });
    for (int r = 0; r < 50'000; ++r) {
        append(store, {std::to_string(r), std::string(static_cast<std::size_t>(r % 90), 'x')});
        if (r % 100 == 0)
            store.publish();
    }
    store.publish();
    reader.join();
}

TEST(DXRowStore, passesAnyNumberOfRowsThroughLittleMemory)
{
    DXRowStore store(1);
    qsizetype mostMemory = 0;
    for (int r = 0; r < 200'000; ++r) {
        append(store, {std::to_string(r) + std::string(50, '.')});
        if (r % 100 != 99)
            continue;
        store.publish();
        EXPECT_EQ(read(store, r - 50, 0), std::to_string(r - 50) + std::string(50, '.'));
        store.discardRowsBefore(store.rowCount());
        mostMemory = std::max(mostMemory, store.memoryUsed());
    }
    EXPECT_EQ(store.rowCount(), 200'000);
    EXPECT_LT(mostMemory, 4 * 1024 * 1024);
    EXPECT_TRUE(store.cell(0, 0).isNull());
    EXPECT_EQ(read(store, 199'999, 0), "199999" + std::string(50, '.'));
}

} // namespace
