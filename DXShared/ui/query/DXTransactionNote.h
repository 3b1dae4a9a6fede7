// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class DXFailureList;
class DXQuerySession;

/// Says above a tab, while the session's transaction has failed, that nothing more can be done in
/// it, and rolls it back when asked. [main]
class DXTransactionNote final : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this.
    DXTransactionNote(DXQuerySession &session, DXFailureList &failures);

private:
    void show();
    void settle();

    DXQuerySession &m_session;
    DXFailureList &m_failures;
};
