// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "core/DXGlobal.h"

#include <QList>

#include <memory>
#include <mutex>

/// What a batch has yielded so far, shared between the thread that runs it and those that show it.
/// It is the lock of its own contents. Every operation is [any]. Made to be derived from by whoever
/// wants to hear of each change on the executing thread.
class DXSHARED_EXPORT DXQueryResult
{
public:
    using ResultSets = QList<std::shared_ptr<DXQueryResultDetails>>;

    DXQueryResult() = default;
    virtual ~DXQueryResult();

    /// The statements that have begun, in order.
    ResultSets resultSets() const;
    virtual void setResultSets(const ResultSets &resultSets);
    /// Rows of all statements together.
    qint64 totalResultCount() const;
    virtual void incrementTotalResultCountBy(qint64 count);
    qint64 messagesCount() const;
    virtual void incrementMessagesCount(qint64 count);
    /// The first of the statements that ended well and that the server rolled back afterwards,
    /// because a later one failed: it and those up to the failed one did nothing. -1 when there is
    /// none.
    qsizetype firstUndoneStatement() const;
    void setFirstUndoneStatement(qsizetype statement);

    /// Locked by whoever reads the list and stores a changed one as one step (BasicLockable).
    void lock() const { m_mutex.lock(); }
    void unlock() const { m_mutex.unlock(); }

private:
    Q_DISABLE_COPY_MOVE(DXQueryResult)

    mutable std::recursive_mutex m_mutex;
    ResultSets m_resultSets;
    qint64 m_totalResultCount = 0;
    qint64 m_messagesCount = 0;
    qsizetype m_firstUndoneStatement = -1;
};
