// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliGrid.h"
#include "cli/output/CliGridWriter.h"
#include "client/DXQueryResult.h"
#include "core/DXError.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class CliConsole;

/// Prints what a batch yields while it runs, and forgets it: memory does not grow with the answer.
/// Rows print on the executing thread, which so waits for a slow reader. Executing thread only,
/// printFailure() excepted.
class CliBatchPrinter final : public DXQueryResult
{
public:
    struct Init
    {
        CliConsole &console;
        CliFormat format = CliFormat::Table;
        CliGridWriter::Header header = CliGridWriter::Header::Yes;
        /// Leaves out messages of success.
        bool isQuiet = false;
        /// Called once when standard output cannot be written any more, on the executing thread.
        std::function<void()> outputFailed;
    };
    explicit CliBatchPrinter(const Init &init);
    ~CliBatchPrinter() override;

    void incrementTotalResultCountBy(qint64 count) override;
    /// The batch's progress block: the last statement has finished.
    void statementFinished();
    /// The error that the batch left, marked in its text. Once the batch has ended. [main]
    void printFailure(const DXError &error, const QString &text);

private:
    void beginGrid();
    void printRows();
    void printMessages(const DXQueryResultDetails &details);
    void checkOutput();

    const Init m_init;
    const std::unique_ptr<CliGridWriter> m_writer;
    std::optional<CliGrid> m_grid;
    qsizetype m_printedRows = 0;
    bool m_hasOutputFailed = false;
};
