// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliGridWriter.h"

#include <QByteArray>
#include <QByteArrayView>

/// What CSV and TSV have in common: a line a row, fields with a separator between, and an empty
/// line between two grids. On a terminal fields are shown as CliText::printable() has them.
class CliDelimitedWriter : public CliGridWriter
{
public:
    void begin(CliGrid &grid) override;
    void writeRow(CliGrid &grid, qsizetype row) override;

protected:
    CliDelimitedWriter(char separator, Header header, CliOutput &output);

    /// Appends a field of text to line in the format's quoting.
    virtual void appendField(QByteArray &line, QByteArrayView text) const = 0;
    /// Appends the field that stands for NULL.
    virtual void appendNull(QByteArray &line) const = 0;

private:
    void appendShown(QByteArray &line, QByteArrayView text) const;

    const char m_separator;
    const Header m_header;
    CliOutput &m_output;
    bool m_isFirstGrid = true;
};
