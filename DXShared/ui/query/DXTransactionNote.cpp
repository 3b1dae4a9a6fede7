// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXTransactionNote.h"

#include "ui/DXFailureList.h"
#include "ui/query/DXQuerySession.h"

namespace
{

QString about()
{
    return QStringLiteral("transaction");
}

} // namespace

DXTransactionNote::DXTransactionNote(DXQuerySession &session, DXFailureList &failures)
    : m_session(session)
    , m_failures(failures)
{
    connect(&session, &DXQuerySession::stateChanged, this, &DXTransactionNote::settle);
    // Said again when it was put away and the server refused something since.
    connect(&session, &DXQuerySession::finished, this, &DXTransactionNote::show);
}

void DXTransactionNote::show()
{
    if (!m_session.hasFailedTransaction())
        return;
    m_failures.showFailure(about(),
                           tr("The transaction has failed. The server runs nothing more here until "
                              "it is rolled back, or back to a savepoint."),
                           {}, {{tr("Roll back"), [this] { m_session.rollback(); }}});
}

void DXTransactionNote::settle()
{
    if (!m_session.hasFailedTransaction())
        m_failures.settle(about());
}
