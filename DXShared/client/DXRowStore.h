// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QByteArrayView>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

/// The rows of one result, as the bytes that the server sent. One thread appends and publishes; any
/// thread reads what is published, for as long as the store lives. Cells are packed in append-only
/// chunks that never move, so no row is contiguous beyond its chunk and chunks can be kept
/// elsewhere.
class DXSHARED_EXPORT DXRowStore final
{
public:
    /// A cell: null when data is.
    struct Cell
    {
        const char *data = nullptr;
        qsizetype size = 0;

        bool isNull() const { return data == nullptr; }
        QByteArrayView view() const { return {data, size}; }
    };

    explicit DXRowStore(quint32 columnCount);
    ~DXRowStore();

    quint32 columnCount() const { return m_columnCount; }
    /// Rows that readers may read. [any]
    qsizetype rowCount() const { return m_published.load(std::memory_order_acquire); }
    /// Rows appended, published or not. Appending thread only.
    qsizetype appendedRowCount() const { return m_appended; }
    /// Bytes of memory that the store holds. [any]
    qsizetype memoryUsed() const { return m_memoryUsed.load(std::memory_order_relaxed); }

    /// Appends a row: cellAt(column) gives each Cell in turn, and its bytes are copied before the
    /// next call. A cell holds at most 2 GiB. Appending thread only.
    template<typename CellAt>
    void appendRow(CellAt &&cellAt);
    /// Makes every appended row readable. Appending thread only.
    void publish() { m_published.store(m_appended, std::memory_order_release); }

    /// The cell of a published row; its bytes live as long as the store. Null beyond either end.
    /// [any]
    Cell cell(qsizetype row, quint32 column) const;
    /// Frees memory that holds only rows before row; such rows then read as null. For a reader who
    /// needs each row once, so that an answer of any size passes through little memory; nobody may
    /// still use a cell of those rows. [any]
    void discardRowsBefore(qsizetype row);

private:
    Q_DISABLE_COPY_MOVE(DXRowStore)

    // Where a cell's bytes are in its chunk; length -1 is NULL.
    struct Entry
    {
        std::uint32_t offset;
        std::int32_t length;
    };
    // One allocation: cell bytes grow from its front, entries from its back, in row and column
    // order.
    struct Chunk
    {
        std::unique_ptr<char[]> memory;
        std::size_t size = 0;
        qsizetype firstRow = 0;

        Entry *entry(std::size_t index) const
        {
            return reinterpret_cast<Entry *>(memory.get() + size) - 1 - index;
        }
    };

    // Continues the row being appended, of which `written` cells stand, in a chunk with room for
    // another `needed` bytes.
    void moveRowToNewChunk(quint32 written, std::size_t needed);

    const quint32 m_columnCount;
    qsizetype m_appended = 0;
    // The appending thread's place in the last chunk.
    Chunk *m_chunk = nullptr;
    char *m_front = nullptr;
    char *m_back = nullptr;
    char *m_rowFront = nullptr;

    std::atomic<qsizetype> m_published = 0;
    std::atomic<qsizetype> m_memoryUsed = 0;
    mutable std::mutex m_chunksMutex;
    std::vector<std::unique_ptr<Chunk>> m_chunks;
};

template<typename CellAt>
void DXRowStore::appendRow(CellAt &&cellAt)
{
    m_rowFront = m_front;
    for (quint32 column = 0; column < m_columnCount; ++column) {
        const Cell cell = cellAt(column);
        const auto size = static_cast<std::size_t>(cell.size);
        if (static_cast<std::size_t>(m_back - m_front) < size + sizeof(Entry))
            moveRowToNewChunk(column, size + sizeof(Entry));
        m_back -= sizeof(Entry);
        const Entry entry{static_cast<std::uint32_t>(m_front - m_chunk->memory.get()),
                          cell.isNull() ? -1 : static_cast<std::int32_t>(size)};
        std::memcpy(m_back, &entry, sizeof(Entry));
        if (size != 0)
            std::memcpy(m_front, cell.data, size);
        m_front += size;
    }
    ++m_appended;
}
