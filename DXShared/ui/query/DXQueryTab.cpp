// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXQueryTab.h"

#include "client/DXNoticeQueue.h"
#include "client/DXQueryResult.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "editing/DXSQLCompletion.h"
#include "ui/DXDurationText.h"
#include "ui/DXFailureList.h"
#include "ui/editor/DXCompletionPopup.h"
#include "ui/editor/DXFindBar.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXMessageView.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXTransactionNote.h"
#include "ui/results/DXResultOutput.h"
#include "ui/results/DXResultPage.h"
#include "ui/results/DXValueView.h"

#include <QLocale>
#include <QShortcut>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <utility>

namespace
{

// Words of the SQL standard that no server reserves, so that drivers do not list them, but that
// read as part of a statement.
const char *const standardWords[] = {
    "add",          "after",   "before",    "by",        "cascade",     "column",    "each",
    "execute",      "exists",  "following", "function",  "if",          "index",     "instead",
    "materialized", "nulls",   "over",      "partition", "preceding",   "procedure", "recursive",
    "restrict",     "returns", "set",       "temporary", "transaction", "trigger",   "unbounded",
    "unlogged",     "values",  "view",      "within",    "without"};

DXSQLEditor *createEditor(const DabroDBC &details)
{
    QStringList words = details.functionsAndKeywords();
    for (const char *const word : standardWords)
        words.append(QLatin1String(word));
    return new DXSQLEditor({.options = *details.createPreParserOptions(), .keywords = words});
}

QWidget *withFindBar(DXSQLEditor &editor)
{
    auto *const widget = new QWidget;
    auto *const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(&editor);
    layout->addWidget(new DXFindBar(editor));
    return widget;
}

DXMessageView::Kind kindOf(DXResultTask::Outcome outcome)
{
    switch (outcome) {
    case DXResultTask::Outcome::Done:
        return DXMessageView::Kind::Success;
    case DXResultTask::Outcome::Incomplete:
        return DXMessageView::Kind::Notice;
    case DXResultTask::Outcome::Failed:
        return DXMessageView::Kind::Error;
    case DXResultTask::Outcome::Cancelled:
        break;
    }
    return DXMessageView::Kind::Information;
}

} // namespace

DXQueryTab::DXQueryTab(const Init &init, QWidget *parent)
    : QWidget(parent)
    , m_failures(new DXFailureList)
    , m_editor(createEditor(*init.details))
    , m_completion(new DXCompletionPopup(*m_editor))
    , m_session(new DXQuerySession({.details = init.details}, this))
    , m_transactionNote(std::make_unique<DXTransactionNote>(*m_session, *m_failures))
    , m_messages(new DXMessageView)
    , m_results(new QTabWidget)
    , m_output(new DXResultOutput)
    , m_dialectClient(init.details->createNewClient())
    , m_hasConnection(init.hasConnection)
{
    auto *const splitter = new QSplitter(Qt::Vertical);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(withFindBar(*m_editor));
    splitter->addWidget(createResultsPane());
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_failures);
    layout->addWidget(splitter, 1);
    setFocusProxy(m_editor);

    updateCompletion(ReadNames::AtOnce);
    m_tick.setInterval(std::chrono::milliseconds(100));
    connect(&m_tick, &QTimer::timeout, this, &DXQueryTab::updateTitles);
    connect(m_session, &DXQuerySession::stateChanged, this, &DXQueryTab::statusChanged);
    connect(m_session, &DXQuerySession::progressed, this, &DXQueryTab::takeResults);
    connect(m_session, &DXQuerySession::finished, this, &DXQueryTab::showEnd);
    connect(m_session, &DXQuerySession::noticesReceived, this, &DXQueryTab::showNotices);
    connect(m_session, &DXQuerySession::reconnected, this, [this] {
        m_messages->append(DXMessageView::Kind::Information,
                           tr("The connection had been lost and was made anew. Settings and "
                              "temporary tables of the old session are gone."));
    });
}

DXQueryTab::~DXQueryTab() = default;

QWidget *DXQueryTab::createResultsPane()
{
    m_results->setDocumentMode(true);
    m_results->setUsesScrollButtons(true);
    m_results->setAccessibleName(tr("Results"));
    m_results->tabBar()->setExpanding(false);
    m_results->addTab(m_messages, tr("Messages"));
    auto *const pane = new QWidget;
    auto *const layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_results);
    layout->addWidget(m_output);
    auto *const escape = new QShortcut(Qt::Key_Escape, pane);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    escape->setEnabled(false);
    connect(escape, &QShortcut::activated, m_output, &DXResultOutput::cancel);
    connect(m_output, &DXResultOutput::busyChanged, escape, &QShortcut::setEnabled);
    connect(m_output, &DXResultOutput::ended, this,
            [this](DXResultTask::Outcome outcome, const QString &message) {
                m_messages->append(kindOf(outcome), message);
                if (outcome == DXResultTask::Outcome::Failed
                    || outcome == DXResultTask::Outcome::Incomplete)
                    m_results->setCurrentWidget(m_messages);
            });
    return pane;
}

const std::shared_ptr<DabroDBC> &DXQueryTab::details() const
{
    return m_session->details();
}

bool DXQueryTab::setDetails(const std::shared_ptr<DabroDBC> &details, ReadNames readNames)
{
    if (!m_session->setDetails(details))
        return false;
    m_hasConnection = true;
    updateCompletion(readNames);
    Q_EMIT statusChanged();
    return true;
}

void DXQueryTab::updateCompletion(ReadNames readNames)
{
    if (!m_hasConnection)
        return;
    const auto completion = std::make_shared<DXSQLCompletion>(details());
    m_unreadNames = readNames == ReadNames::OnRun ? completion : nullptr;
    if (!m_unreadNames)
        completion->load();
    m_completion->setCompletion(completion);
}

void DXQueryTab::runAll()
{
    run(m_editor->statements());
}

void DXQueryTab::runStatementAtCaret()
{
    if (!m_editor->selectedSql().isNull())
        run(m_editor->statements());
    else if (const auto statement = m_editor->statementAtCaret())
        run({*statement});
}

void DXQueryTab::run(const QList<DXQueryDetails> &statements)
{
    if (statements.isEmpty() || m_session->isBusy())
        return;
    clearResults();
    if (!m_hasConnection) {
        m_messages->append(DXMessageView::Kind::Error,
                           tr("This tab has no connection yet. Choose one in the toolbar."));
        return;
    }
    if (const auto names = std::exchange(m_unreadNames, nullptr))
        names->load();
    m_runsSeveral = statements.size() > 1;
    const DXTextRange first = statements.constFirst().queryRange;
    m_editor->markRunning(
        DXTextRange{first.location, statements.constLast().queryRange.end() - first.location});
    m_tick.start();
    m_result = m_session->run(statements);
}

void DXQueryTab::cancel()
{
    m_session->cancel();
}

void DXQueryTab::clearResults()
{
    m_editor->clearMarks();
    m_messages->reset();
    for (DXResultPage *const page : resultPages())
        delete page;
    m_result.reset();
    m_pagedStatements = 0;
    m_reportedStatements = 0;
    m_lastFailure.clear();
    m_hasWarned = false;
}

QList<DXResultPage *> DXQueryTab::resultPages() const
{
    QList<DXResultPage *> pages;
    for (int at = 0; at < m_results->count(); ++at) {
        if (auto *const page = qobject_cast<DXResultPage *>(m_results->widget(at)))
            pages.append(page);
    }
    return pages;
}

DXResultPage *DXQueryTab::currentResultPage() const
{
    return qobject_cast<DXResultPage *>(m_results->currentWidget());
}

void DXQueryTab::takeResults()
{
    if (!m_result)
        return;
    const auto sets = m_result->resultSets();
    for (; m_pagedStatements < sets.size(); ++m_pagedStatements) {
        const auto &details = sets[m_pagedStatements];
        // Asked first: a statement that has ended has all of its columns.
        const bool isFinished = details->isFinished();
        if (!details->columnNames().isEmpty())
            addPage(details);
        else if (!isFinished)
            break;
    }
    for (; m_reportedStatements < sets.size() && sets[m_reportedStatements]->isFinished();
         ++m_reportedStatements)
        report(*sets[m_reportedStatements]);
    updateTitles();
}

void DXQueryTab::report(const DXQueryResultDetails &details)
{
    const auto tell = [&](DXMessageView::Kind kind, const QString &text) {
        const QString line = QLocale().toString(details.calculatedLineNumber() + 1);
        m_messages->append(kind, m_runsSeveral ? tr("Line %1: %2").arg(line, text) : text);
    };
    for (const DXQueryMessage &message : details.messages()) {
        const bool isFailure = message.color == DXMessageColor::Red;
        if (isFailure)
            m_lastFailure = message.text;
        tell(isFailure ? DXMessageView::Kind::Error : DXMessageView::Kind::Success,
             DXError::withoutQuotedLine(message.text).trimmed());
    }
    if (!details.hasRolledBackInstead())
        return;
    tell(DXMessageView::Kind::Notice, tr("The transaction was rolled back instead, because an "
                                         "earlier statement in it had failed."));
    m_hasWarned = true;
}

void DXQueryTab::addPage(const std::shared_ptr<DXQueryResultDetails> &details)
{
    auto *const page =
        new DXResultPage({.details = details, .dialect = dialect(), .output = *m_output});
    connect(page, &DXResultPage::valueRequested, this, &DXQueryTab::showValue);
    const int at = m_results->count() - 1;
    m_results->insertTab(at, page, QString());
    if (at == 0)
        m_results->setCurrentIndex(0);
}

void DXQueryTab::updateTitles()
{
    const auto pages = resultPages();
    for (int at = 0; at < pages.size(); ++at) {
        const qsizetype rows = pages[at]->rowCount();
        const QString title =
            rows == 1
                ? tr("Result %1 (1 row)").arg(at + 1)
                : tr("Result %1 (%2 rows)").arg(QString::number(at + 1), QLocale().toString(rows));
        if (m_results->tabText(at) != title)
            m_results->setTabText(at, title);
    }
    Q_EMIT statusChanged();
}

void DXQueryTab::showEnd(const DXError &error)
{
    takeResults();
    m_tick.stop();
    m_editor->markRunning(std::nullopt);
    m_editor->markErrors(error.queryErrorRanges());
    // A failed statement has told its error itself; what failed besides has not.
    const QString failure = error.description().trimmed();
    if (error && !m_lastFailure.startsWith(failure.section(u'\n', 0, 0)))
        m_messages->append(DXMessageView::Kind::Error, failure);
    if (error || m_hasWarned || resultPages().isEmpty())
        m_results->setCurrentWidget(m_messages);
    if (error && m_result)
        showUndone();
    updateTitles();
    Q_EMIT finished(error);
}

// Statements that told of their success before did nothing after all.
void DXQueryTab::showUndone()
{
    const qsizetype first = m_result->firstUndoneStatement();
    if (first < 0)
        return;
    const qsizetype line = m_result->resultSets()[first]->calculatedLineNumber() + 1;
    m_messages->append(DXMessageView::Kind::Error,
                       first == 0 ? tr("Nothing of this run was kept: the server ran it as one "
                                       "transaction, and rolled that back.")
                                  : tr("Nothing from line %1 on was kept: the server ran it as one "
                                       "transaction, and rolled that back.")
                                        .arg(QLocale().toString(line)));
}

void DXQueryTab::showNotices(const QList<DXNotice> &notices, qint64 leftOut)
{
    QList<DXMessageView::Message> messages;
    messages.reserve(notices.size());
    for (const DXNotice &notice : notices)
        messages.append({DXMessageView::Kind::Notice, notice.time, notice.text.trimmed()});
    m_messages->append(messages, leftOut);
}

void DXQueryTab::showValue(const QString &column, const DXValue &value)
{
    if (!m_valueView)
        m_valueView = new DXValueView(this);
    m_valueView->showValue(column, value);
}

void DXQueryTab::showResult(int step)
{
    const int count = m_results->count();
    m_results->setCurrentIndex((m_results->currentIndex() + step + count) % count);
    m_results->currentWidget()->setFocus();
}

DXResultText::Dialect DXQueryTab::dialect() const
{
    return {.tableName = QStringLiteral("table_name"),
            .escapeName = [client = m_dialectClient](
                              const QString &name) { return client->escapeTablePaths(name); },
            .escapeValue = [client = m_dialectClient](
                               const DXValue &value) { return client->escapeColumnValue(value); }};
}

QString DXQueryTab::summary() const
{
    const QString duration = DXDurationText::rounded(m_session->elapsed());
    switch (m_session->state()) {
    case DXQuerySession::State::Connecting:
        return tr("Connecting · %1").arg(duration);
    case DXQuerySession::State::Cancelling:
        return tr("Cancelling · %1").arg(duration);
    case DXQuerySession::State::Running:
    case DXQuerySession::State::Idle:
        break;
    }
    if (!m_result)
        return {};
    const qint64 rows = m_result->totalResultCount();
    return rows == 1 ? tr("1 row · %1").arg(duration)
                     : tr("%1 rows · %2").arg(QLocale().toString(rows), duration);
}
