// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliDelimitedWriter.h"

/// Tab-separated values: \t, \n, \r and \\ for what would break a line apart, \N for NULL.
class CliTsvWriter final : public CliDelimitedWriter
{
public:
    CliTsvWriter(Header header, CliOutput &output);

protected:
    void appendField(QByteArray &line, QByteArrayView text) const override;
    void appendNull(QByteArray &line) const override;
};
