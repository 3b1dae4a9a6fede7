// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliGridWriter.h"

#include "cli/output/CliCsvWriter.h"
#include "cli/output/CliJsonWriter.h"
#include "cli/output/CliTableWriter.h"
#include "cli/output/CliTsvWriter.h"

CliGridWriter::~CliGridWriter() = default;

void CliGridWriter::end(CliGrid &) { }

std::optional<CliFormat> CliGridWriter::formatNamed(QStringView name)
{
    if (name == QLatin1String("table"))
        return CliFormat::Table;
    if (name == QLatin1String("csv"))
        return CliFormat::Csv;
    if (name == QLatin1String("jsonl"))
        return CliFormat::JsonLines;
    if (name == QLatin1String("tsv"))
        return CliFormat::Tsv;
    return std::nullopt;
}

std::unique_ptr<CliGridWriter> CliGridWriter::create(CliFormat format, Header header,
                                                     CliOutput &output)
{
    switch (format) {
    case CliFormat::Csv:
        return std::make_unique<CliCsvWriter>(header, output);
    case CliFormat::JsonLines:
        return std::make_unique<CliJsonWriter>(output);
    case CliFormat::Tsv:
        return std::make_unique<CliTsvWriter>(header, output);
    case CliFormat::Table:
        break;
    }
    return std::make_unique<CliTableWriter>(header, output);
}
