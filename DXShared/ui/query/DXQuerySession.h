// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXNoticeQueue.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "query/DXQueryRun.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

class DXQueryResult;
class DabroDBC;
class DabroDatabaseClient;

/// The connection of one query tab, which is nobody else's, so that its transaction and settings
/// are its own. It connects when something is run and, without a word, again when the connection
/// was lost while idle; nothing here waits for the server. [main], signals included.
class DXSHARED_EXPORT DXQuerySession final : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle,
        Connecting,
        Running,
        /// The server was asked to stop, and has not stopped yet.
        Cancelling
    };

    struct Init
    {
        std::shared_ptr<DabroDBC> details;
        /// How long a server may take to stop after it was asked, before the connection is broken.
        std::chrono::milliseconds patience = std::chrono::seconds(5);
    };
    explicit DXQuerySession(const Init &init, QObject *parent = nullptr);
    /// Stops what runs and breaks the connection, without waiting for either.
    ~DXQuerySession() override;

    const std::shared_ptr<DabroDBC> &details() const { return m_init.details; }
    /// Leaves the connection for another one, which is made when something is run. False, and
    /// nothing happens, while the session is busy or in a transaction.
    bool setDetails(const std::shared_ptr<DabroDBC> &details);
    /// Leaves the server: what runs is stopped and an open transaction rolled back, without waiting
    /// for either. The next run connects anew.
    void leave();
    State state() const { return m_state; }
    bool isBusy() const { return m_state != State::Idle; }
    /// How long the current or last run has taken, in milliseconds; 0 before the first.
    qint64 elapsed() const;

    /// Whether a transaction was open when the server was last heard of.
    bool isInTransaction() const { return m_transaction.isValid(); }
    /// Whether a statement failed in it, so that the server does nothing more but roll it back.
    bool hasFailedTransaction() const { return m_hasFailedTransaction; }
    /// For how long one has been open, in milliseconds.
    qint64 transactionAge() const;
    /// Whether what is run opens a transaction where none is open, for the user to commit.
    bool commitsManually() const { return m_commitsManually; }
    void setCommitsManually(bool manually) { m_commitsManually = manually; }

    /// Null before the first connect.
    QString serverVersion() const { return m_serverVersion; }
    /// How the server is reached, for people.
    QString connectionSummary() const { return m_connectionSummary; }

    /// Connects, unless that is done.
    void connectToServer();
    /// Runs the statements, as one batch unless it commits manually, and answers what they yield,
    /// which fills while they run. Nothing while the session is busy.
    std::shared_ptr<DXQueryResult> run(const QList<DXQueryDetails> &statements);
    void commit();
    void rollback();
    /// Asks the server to stop what runs, and breaks the connection when it does not. A connection
    /// that is only being made is given up at once.
    void cancel();

Q_SIGNALS:
    void stateChanged();
    /// A statement began, ended, or yielded its first rows; at most once a turn of the event loop.
    void progressed();
    /// The server said something beside its answers; leftOut is how often it did before that and
    /// is not told, because it said too much at once.
    void noticesReceived(const QList<DXNotice> &notices, qint64 leftOut);
    /// A lost connection was made anew: settings and temporary tables of the old one are gone.
    void reconnected();
    /// What was started has ended; error is empty when all went well.
    void finished(const DXError &error);

private:
    class Result;
    using Stage = DXQueryRun::Stage;

    void createClient();
    void start(DXQueryRun::Init init);
    void reached(Stage stage);
    void ended(const DXQueryRun::Outcome &outcome);
    void finish();
    void requestCancel();
    void escalate();
    void abandon(const QString &reason);
    void dropClient();
    void forgetConnection();
    void tellNotices();
    void setState(State state);

    Init m_init;
    std::shared_ptr<DabroDatabaseClient> m_client;
    std::shared_ptr<DXNoticeQueue> m_notices;
    // There while the session is busy.
    std::shared_ptr<DXQueryRun> m_run;
    // Answers of an earlier run, or of a client that was given up, carry another number.
    quint64 m_number = 0;
    State m_state = State::Idle;
    bool m_commitsManually = false;
    // Whether there was a connection when the server was last heard of, and ever.
    bool m_isConnected = false;
    bool m_wasConnected = false;
    bool m_isCancelUnderWay = false;
    std::optional<DXQueryRun::Outcome> m_outcome;
    QElapsedTimer m_transaction;
    bool m_hasFailedTransaction = false;
    QElapsedTimer m_clock;
    qint64 m_elapsed = 0;
    QTimer m_cancelTimer;
    QTimer m_patienceTimer;
    QString m_serverVersion;
    QString m_connectionSummary;
};
