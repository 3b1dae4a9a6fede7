// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliGridWriter.h"

#include <QByteArray>
#include <QList>

/// An object a row, each on a line of its own, members in column order. Exact numbers are numbers
/// with all their digits, booleans true and false, NULL null, everything else text; characters that
/// do not print are escaped. Of columns that share a name the later ones get a number: "n", "n_2".
class CliJsonWriter final : public CliGridWriter
{
public:
    explicit CliJsonWriter(CliOutput &output);

    void begin(CliGrid &grid) override;
    void writeRow(CliGrid &grid, qsizetype row) override;

private:
    CliOutput &m_output;
    // Each column's name as a member begins: quoted, with the colon.
    QList<QByteArray> m_members;
};
