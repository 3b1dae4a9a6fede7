// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryDetails.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "ui/results/DXResultText.h"

#include <QList>
#include <QTimer>
#include <QWidget>

#include <memory>

class DXCompletionPopup;
class DXFailureList;
class DXMessageView;
class DXQueryResult;
class DXQueryResultDetails;
class DXQuerySession;
class DXResultOutput;
class DXResultPage;
class DXSQLCompletion;
class DXSQLEditor;
class DXTransactionNote;
class DXValueView;
class DabroDBC;
class DabroDatabaseClient;
class QTabWidget;
struct DXNotice;

/// An editor, its connection, and what the statements run in it yielded: a grid each, and their
/// messages. [main]
class DXSHARED_EXPORT DXQueryTab final : public QWidget
{
    Q_OBJECT

public:
    struct Init
    {
        /// Tells how SQL is read and, unless hasConnection is false, where it is run.
        std::shared_ptr<DabroDBC> details;
        bool hasConnection = true;
    };
    explicit DXQueryTab(const Init &init, QWidget *parent = nullptr);
    ~DXQueryTab() override;

    DXSQLEditor &editor() const { return *m_editor; }
    DXQuerySession &session() const { return *m_session; }
    /// What failed with the text, not with its statements.
    DXFailureList &failures() const { return *m_failures; }
    const std::shared_ptr<DabroDBC> &details() const;
    /// Without one nothing is run.
    bool hasConnection() const { return m_hasConnection; }
    /// Whether the names for completion are read at once, or only when something is run: connecting
    /// may ask the user for secrets.
    enum class ReadNames { AtOnce, OnRun };
    /// Takes another connection; false, and nothing happens, while the session is busy or in a
    /// transaction.
    bool setDetails(const std::shared_ptr<DabroDBC> &details,
                    ReadNames readNames = ReadNames::AtOnce);

    /// Runs the selection, or the whole text when nothing is selected.
    void runAll();
    /// Runs the statement that the caret stands in, marked in the text meanwhile, or the selection.
    void runStatementAtCaret();
    void cancel();

    /// The result pages of the last run, in order.
    QList<DXResultPage *> resultPages() const;
    /// The page that is looked at; null while it is the messages'.
    DXResultPage *currentResultPage() const;
    /// What copies and saves results.
    DXResultOutput &output() const { return *m_output; }
    DXMessageView &messages() const { return *m_messages; }
    /// Goes to the next (1) or the previous (-1) page of the results.
    void showResult(int step);
    /// What the last run yielded and how long it took, or takes, in one line.
    QString summary() const;

Q_SIGNALS:
    /// summary(), or the session's state or transaction, is another.
    void statusChanged();
    /// What was run has ended.
    void finished(const DXError &error);

private:
    void updateCompletion(ReadNames readNames);
    void run(const QList<DXQueryDetails> &statements);
    void clearResults();
    void takeResults();
    void report(const DXQueryResultDetails &details);
    void addPage(const std::shared_ptr<DXQueryResultDetails> &details);
    void updateTitles();
    void showEnd(const DXError &error);
    void showUndone();
    void showNotices(const QList<DXNotice> &notices, qint64 leftOut);
    void showValue(const QString &column, const DXValue &value);
    QWidget *createResultsPane();
    DXResultText::Dialect dialect() const;

    DXFailureList *const m_failures;
    DXSQLEditor *const m_editor;
    DXCompletionPopup *const m_completion;
    DXQuerySession *const m_session;
    const std::unique_ptr<DXTransactionNote> m_transactionNote;
    DXMessageView *const m_messages;
    QTabWidget *const m_results;
    DXResultOutput *const m_output;
    DXValueView *m_valueView = nullptr;
    // Knows how names and values are written; never connected.
    const std::shared_ptr<const DabroDatabaseClient> m_dialectClient;
    std::shared_ptr<DXQueryResult> m_result;
    // How many of the run's statements have their page, if they need one, and their messages.
    qsizetype m_pagedStatements = 0;
    qsizetype m_reportedStatements = 0;
    QString m_lastFailure;
    // Something was told that went otherwise than the user has to think.
    bool m_hasWarned = false;
    bool m_runsSeveral = false;
    bool m_hasConnection;
    // Whose names are read with the next run.
    std::shared_ptr<DXSQLCompletion> m_unreadNames;
    QTimer m_tick;
};
