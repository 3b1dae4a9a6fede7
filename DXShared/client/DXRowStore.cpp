// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXRowStore.h"

#include <algorithm>

namespace
{

// Small answers are many and should cost little; large ones should not be cut into many pieces.
constexpr std::size_t smallestChunk = 4 * 1024;
constexpr std::size_t largestChunk = 1024 * 1024;

} // namespace

DXRowStore::DXRowStore(quint32 columnCount)
    : m_columnCount(columnCount)
{ }

DXRowStore::~DXRowStore() = default;

void DXRowStore::moveRowToNewChunk(quint32 written, std::size_t needed)
{
    const auto rowBytes = static_cast<std::size_t>(m_front - m_rowFront);
    const std::size_t rowNeeds = rowBytes + needed + (m_columnCount - 1) * sizeof(Entry);
    const std::size_t usual = m_chunk ? std::min(m_chunk->size * 2, largestChunk) : smallestChunk;

    auto chunk = std::make_unique<Chunk>();
    // A multiple of the entry's size, so that entries counted from the end are aligned.
    chunk->size = (std::max(usual, rowNeeds) + sizeof(Entry) - 1) / sizeof(Entry) * sizeof(Entry);
    chunk->memory = std::make_unique_for_overwrite<char[]>(chunk->size);
    chunk->firstRow = m_appended;

    char *const front = chunk->memory.get();
    char *const back = front + chunk->size - written * sizeof(Entry);
    if (rowBytes != 0)
        std::memcpy(front, m_rowFront, rowBytes);
    for (quint32 column = 0; column < written; ++column) {
        Entry entry{};
        std::memcpy(&entry, m_back + (written - 1 - column) * sizeof(Entry), sizeof(Entry));
        entry.offset -= static_cast<std::uint32_t>(m_rowFront - m_chunk->memory.get());
        std::memcpy(front + chunk->size - (column + 1) * sizeof(Entry), &entry, sizeof(Entry));
    }

    const std::lock_guard lock(m_chunksMutex);
    // A chunk that holds nothing but the row that just left it has no reader.
    if (m_chunk && m_chunk->firstRow == m_appended) {
        m_memoryUsed -= static_cast<qsizetype>(m_chunk->size);
        m_chunks.pop_back();
    }
    m_memoryUsed += static_cast<qsizetype>(chunk->size);
    m_chunk = chunk.get();
    m_chunks.push_back(std::move(chunk));
    m_front = front + rowBytes;
    m_rowFront = front;
    m_back = back;
}

DXRowStore::Cell DXRowStore::cell(qsizetype row, quint32 column) const
{
    if (row < 0 || row >= rowCount() || column >= m_columnCount)
        return {};
    const Chunk *chunk = nullptr;
    {
        const std::lock_guard lock(m_chunksMutex);
        const auto next = std::upper_bound(
            m_chunks.begin(), m_chunks.end(), row,
            [](qsizetype wanted, const auto &candidate) { return wanted < candidate->firstRow; });
        if (next == m_chunks.begin())
            return {};
        chunk = std::prev(next)->get();
    }
    const auto index = static_cast<std::size_t>(row - chunk->firstRow) * m_columnCount + column;
    const Entry *entry = chunk->entry(index);
    if (entry->length < 0)
        return {};
    return {chunk->memory.get() + entry->offset, entry->length};
}

void DXRowStore::discardRowsBefore(qsizetype row)
{
    const std::lock_guard lock(m_chunksMutex);
    auto kept = m_chunks.begin();
    // The last chunk is being written.
    for (; m_chunks.end() - kept > 1 && (*std::next(kept))->firstRow <= row; ++kept)
        m_memoryUsed -= static_cast<qsizetype>((*kept)->size);
    m_chunks.erase(m_chunks.begin(), kept);
}
