// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliTsvWriter.h"

#include "core/DXFieldText.h"

CliTsvWriter::CliTsvWriter(Header header, CliOutput &output)
    : CliDelimitedWriter('\t', header, output)
{ }

void CliTsvWriter::appendField(QByteArray &line, QByteArrayView text) const
{
    DXFieldText::appendTsv(line, text);
}

void CliTsvWriter::appendNull(QByteArray &line) const
{
    line += "\\N";
}
