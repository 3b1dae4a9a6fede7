// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliDelimitedWriter.h"

/// Comma-separated values as RFC 4180 quotes them, with line feeds between records as programs here
/// expect. NULL is nothing at all, empty text a pair of quotes.
class CliCsvWriter final : public CliDelimitedWriter
{
public:
    CliCsvWriter(Header header, CliOutput &output);

protected:
    void appendField(QByteArray &line, QByteArrayView text) const override;
    void appendNull(QByteArray &line) const override;
};
