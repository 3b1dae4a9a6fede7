// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliCsvWriter.h"

#include "core/DXFieldText.h"

CliCsvWriter::CliCsvWriter(Header header, CliOutput &output)
    : CliDelimitedWriter(',', header, output)
{ }

void CliCsvWriter::appendField(QByteArray &line, QByteArrayView text) const
{
    DXFieldText::appendCsv(line, text);
}

void CliCsvWriter::appendNull(QByteArray &) const { }
