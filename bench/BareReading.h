// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <libpq-fe.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

/// The least that reading rows costs.
namespace BareReading
{

/// What the driver's store does, without anything around it: chunks of bytes, eight bytes of index
/// a cell.
class Store
{
public:
    /// A length of -1 stands for NULL.
    void append(const char *data, int length)
    {
        const auto size = static_cast<std::size_t>(std::max(length, 0));
        if (m_used + size > chunkSize) {
            m_chunks.push_back(std::make_unique_for_overwrite<char[]>(chunkSize));
            m_used = 0;
        }
        if (m_indexUsed == indexSize) {
            m_index.push_back(std::make_unique_for_overwrite<Entry[]>(indexSize));
            m_indexUsed = 0;
        }
        m_index.back()[m_indexUsed++] = {static_cast<unsigned>(m_used), length};
        std::memcpy(m_chunks.back().get() + m_used, data, size);
        m_used += size;
    }

private:
    struct Entry
    {
        unsigned offset;
        int length;
    };
    static constexpr std::size_t chunkSize = 1024 * 1024;
    static constexpr std::size_t indexSize = 64 * 1024;

    std::vector<std::unique_ptr<char[]>> m_chunks;
    std::vector<std::unique_ptr<Entry[]>> m_index;
    std::size_t m_used = chunkSize;
    std::size_t m_indexUsed = indexSize;
};

/// Reads what query yields row by row and copies every cell; answers how many rows came.
inline qsizetype read(PGconn *connection, const char *query)
{
    Store store;
    qsizetype rows = 0;
    PQsendQuery(connection, query);
    PQsetSingleRowMode(connection);
    while (PGresult *const result = PQgetResult(connection)) {
        if (PQresultStatus(result) == PGRES_SINGLE_TUPLE) {
            const int columns = PQnfields(result);
            for (int column = 0; column < columns; ++column)
                store.append(PQgetvalue(result, 0, column),
                             PQgetisnull(result, 0, column) ? -1 : PQgetlength(result, 0, column));
            ++rows;
        }
        PQclear(result);
    }
    return rows;
}

} // namespace BareReading
