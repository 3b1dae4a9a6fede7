// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliBatchPrinter.h"

#include "cli/CliConsole.h"
#include "cli/output/CliErrorMark.h"

CliBatchPrinter::CliBatchPrinter(const Init &init)
    : m_init(init)
    , m_writer(CliGridWriter::create(init.format, init.header, init.console.output()))
{ }

CliBatchPrinter::~CliBatchPrinter() = default;

void CliBatchPrinter::incrementTotalResultCountBy(qint64 count)
{
    DXQueryResult::incrementTotalResultCountBy(count);
    beginGrid();
    printRows();
}

void CliBatchPrinter::beginGrid()
{
    const std::shared_ptr<DXQueryResultDetails> details = resultSets().constLast();
    if (m_grid || details->columnNames().isEmpty())
        return;
    m_grid.emplace(details);
    m_printedRows = 0;
    m_writer->begin(*m_grid);
}

void CliBatchPrinter::printRows()
{
    if (!m_grid)
        return;
    const qsizetype count = m_grid->rowCount();
    for (; m_printedRows < count && !m_hasOutputFailed; ++m_printedRows)
        m_writer->writeRow(*m_grid, m_printedRows);
    m_grid->discardRowsBefore(count);
    checkOutput();
}

void CliBatchPrinter::checkOutput()
{
    m_init.console.flush();
    if (m_hasOutputFailed || m_init.console.output().failure() == 0)
        return;
    m_hasOutputFailed = true;
    m_init.outputFailed();
}

void CliBatchPrinter::statementFinished()
{
    beginGrid();
    printRows();
    if (m_grid)
        m_writer->end(*m_grid);
    m_grid.reset();
    printMessages(*resultSets().constLast());
    checkOutput();
    // Nobody reads them again.
    setResultSets({});
}

void CliBatchPrinter::printMessages(const DXQueryResultDetails &details)
{
    for (const DXQueryMessage &message : details.messages()) {
        // What failed is told by printFailure(), which knows where.
        if (message.color == DXMessageColor::Red || m_init.isQuiet)
            continue;
        if (m_init.format == CliFormat::Table)
            m_init.console.print(message.text);
        else
            m_init.console.note(message.text);
    }
    if (details.hasRolledBackInstead())
        m_init.console.note(QStringLiteral("The transaction was rolled back instead, because an "
                                           "earlier statement in it had failed."));
}

void CliBatchPrinter::printFailure(const DXError &error, const QString &text)
{
    const QString mark = CliErrorMark::render(text, error.queryErrorRanges());
    const QString message =
        mark.isEmpty() ? error.description() : DXError::withoutQuotedLine(error.description());
    m_init.console.error(message.trimmed());
    if (!mark.isEmpty())
        m_init.console.note(mark);
    if (firstUndoneStatement() == 0)
        m_init.console.note(QStringLiteral("Nothing of this run was kept: the server ran it as one "
                                           "transaction, and rolled that back."));
    else if (firstUndoneStatement() > 0)
        m_init.console.note(QStringLiteral("Nothing since the last transaction ended was kept: the "
                                           "server rolled it back."));
}
