// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "client/DXQueryResult.h"
#include "core/DXLogHelper.h"
#include "core/MachTimer.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresDatabaseResultSet.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "query/SQLTokenizer.h"

#include <utility>

namespace
{

// Rows between two hand-overs: few enough for a grid to fill while the query runs.
constexpr qsizetype rowsPerHandOver = 100;

QString combined(const QList<DXQueryDetails> &queryDetails)
{
    MachTimer timer;
    QString text;
    for (const DXQueryDetails &details : queryDetails)
        text += details.targetQuery;
    DXLog(QString::asprintf("executeQueryDetails string combine took %0.2f seconds",
                            timer.elapsedSeconds()));
    return text;
}

std::shared_ptr<DXQueryResultDetails> appendDetails(const DXQueryDetails &query,
                                                    DXQueryResult &resultSet)
{
    auto details =
        std::make_shared<DXQueryResultDetails>(&PostgresDatabaseResultSet::valueFromCell);
    details->setExecutedQuery(query.targetQuery);
    details->setCalculatedLineNumber(query.lineNumberOffset);
    details->setQueryTextRange(query.queryRange);
    details->setRows(std::make_shared<DXRowStore>(0));
    const std::lock_guard lock(resultSet);
    resultSet.setResultSets(resultSet.resultSets() << details);
    return details;
}

qsizetype readRows(PostgresDatabaseResultSet &rows, DXQueryResultDetails &details,
                   DXQueryResult &resultSet, DXError *error)
{
    const auto store = std::make_shared<DXRowStore>(rows.columnCount());
    details.setRows(store);
    details.setColumnNames(rows.columnNames());
    details.setColumnTypes(rows.columnTypes());

    qsizetype handedOver = 0;
    const auto handOver = [&] {
        details.addRows();
        resultSet.incrementTotalResultCountBy(store->appendedRowCount() - handedOver);
        handedOver = store->appendedRowCount();
    };
    while (rows.next(error)) {
        if (store->appendedRowCount() % rowsPerHandOver == 0)
            handOver();
        rows.appendCurrentRow(*store);
    }
    if (store->appendedRowCount() != handedOver)
        handOver();
    return store->appendedRowCount();
}

DXQueryMessage errorMessage(const DXError &error)
{
    QString text = error.description().trimmed();
    if (!text.isEmpty() && !text.endsWith(QLatin1Char('.')))
        text += QLatin1Char('.');
    return {text, DXMessageColor::Red};
}

DXQueryMessage successMessage(const PostgresDatabaseResultSet &rows, qsizetype rowCount)
{
    QString text = QStringLiteral("Command completed successfully.");
    if (rows.shouldHaveRows())
        text +=
            QStringLiteral(" (%1 result%2).")
                .arg(QString::number(rowCount), rowCount == 1 ? QString() : QStringLiteral("s"));
    else if (rows.numberOfAffectedRows() != -1)
        text += QStringLiteral(" (%1 rows affected).").arg(rows.numberOfAffectedRows());
    return {text, DXMessageColor::Black};
}

// The only sign that a commit was none: the server tells of no failure.
bool hasRolledBackInstead(const QString &statement, const PostgresDatabaseResultSet &rows,
                          const DabroDBC &details)
{
    static const QStringList committing{QStringLiteral("commit"), QStringLiteral("end"),
                                        QStringLiteral("prepare")};
    return rows.commandTag() == "ROLLBACK"
           && committing.contains(
               SQLTokenizer::firstWord(*details.createPreParserOptions(), statement),
               Qt::CaseInsensitive);
}

void finish(DXQueryResultDetails &details, const DXQueryMessage &message, DXQueryResult &resultSet,
            const std::function<void()> &block)
{
    details.setMessages({message});
    resultSet.incrementMessagesCount(1);
    details.setFinished(true);
    if (block)
        block();
}

// The last failure, which ended the batch, is the caller's; each statement shows its own.
void keepLast(DXError &last, const DXError &error)
{
    if (error)
        last = error;
}

} // namespace

bool PostgresDatabaseClient::executeQueryDetails(const QList<DXQueryDetails> &queryDetails,
                                                 DXQueryResult &resultSet,
                                                 const std::function<void()> &block, DXError *error)
{
    if (queryDetails.isEmpty())
        return true;
    const QString text = combined(queryDetails);
    MachTimer timer;
    DXError failure;
    const auto answer = executeQuery(text, &failure);
    DXLog(QString::asprintf("executeQueryDetails Query execution finished, took %0.2f seconds",
                            timer.elapsedSeconds()));
    timer.startTimer();

    DXError lastFailure;
    qsizetype count = 0;
    qsizetype firstOfTransaction = 0;
    if (answer) {
        auto &rows = static_cast<PostgresDatabaseResultSet &>(*answer);
        do {
            if (count == queryDetails.size()) {
                DXLog(QStringLiteral("PostgresDatabaseClient, possible unknown state."));
                break;
            }
            const auto details = appendDetails(queryDetails[count++], resultSet);
            const qsizetype rowCount = readRows(rows, *details, resultSet, &failure);
            failure = withTunnelsEnd(failure);
            details->setRolledBackInstead(
                hasRolledBackInstead(details->executedQuery(), rows, postgresDetails()));
            finish(*details, failure ? errorMessage(failure) : successMessage(rows, rowCount),
                   resultSet, block);
            keepLast(lastFailure, std::exchange(failure, DXError()));
            if (rows.hasEndedTransaction())
                firstOfTransaction = count;
        } while (rows.nextResultSet(&failure));
        forwardNotifications();
        // Statements that are sent together are one transaction, unless some of them say otherwise
        // (manual, "Multiple Statements in a Simple Query"). In one that was begun, it is still
        // open.
        const bool hasServerFailed =
            lastFailure.details().contains(PostgresDatabaseResultSet::sqlStateKey());
        if (hasServerFailed && !isInTransaction() && firstOfTransaction < count - 1)
            resultSet.setFirstUndoneStatement(firstOfTransaction);
    } else {
        if (failure.isEmpty())
            failure = {
                QStringLiteral(""), 0,
                QStringLiteral("There is no connection to the server. Connect and try again.")};
        finish(*appendDetails(queryDetails.first(), resultSet), errorMessage(failure), resultSet,
               block);
    }
    keepLast(lastFailure, failure);
    DXLog(QString::asprintf("executeQueryDetails result loops (%ld) finished, took %0.2f seconds",
                            static_cast<long>(count), timer.elapsedSeconds()));
    if (lastFailure)
        DXError::report(error, processErrorDetails(lastFailure, text,
                                                   queryDetails.first().queryRange.location));
    return true;
}
