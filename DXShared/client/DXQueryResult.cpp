// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXQueryResult.h"

DXQueryResult::~DXQueryResult() = default;

DXQueryResult::ResultSets DXQueryResult::resultSets() const
{
    const std::lock_guard lock(m_mutex);
    return m_resultSets;
}

void DXQueryResult::setResultSets(const ResultSets &resultSets)
{
    const std::lock_guard lock(m_mutex);
    m_resultSets = resultSets;
}

qint64 DXQueryResult::totalResultCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_totalResultCount;
}

void DXQueryResult::incrementTotalResultCountBy(qint64 count)
{
    const std::lock_guard lock(m_mutex);
    m_totalResultCount += count;
}

qint64 DXQueryResult::messagesCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_messagesCount;
}

void DXQueryResult::incrementMessagesCount(qint64 count)
{
    const std::lock_guard lock(m_mutex);
    m_messagesCount += count;
}

qsizetype DXQueryResult::firstUndoneStatement() const
{
    const std::lock_guard lock(m_mutex);
    return m_firstUndoneStatement;
}

void DXQueryResult::setFirstUndoneStatement(qsizetype statement)
{
    const std::lock_guard lock(m_mutex);
    m_firstUndoneStatement = statement;
}
