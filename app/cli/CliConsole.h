// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliOutput.h"

#include <QString>
#include <QStringView>

/// The program's two outputs and how they speak: results on one, everything else on the other. Used
/// by one thread at a time: the one that runs a batch, else the main one.
class CliConsole final
{
public:
    /// Standard output and standard error; colour on a terminal, unless NO_COLOR is set or TERM is
    /// "dumb".
    CliConsole();
    CliConsole(int outputDescriptor, int errorDescriptor, bool hasColor);

    CliOutput &output() { return m_output; }
    /// A line on standard error, behind what standard output got so far. What is unsafe for a
    /// terminal in it is escaped.
    void note(QStringView text);
    /// The same for what went wrong, red where there is colour.
    void error(QStringView text);
    /// A line on standard output.
    void print(QStringView text);
    /// Text on standard output without a line break at its end, shown at once.
    void prompt(QStringView text);
    void flush();

private:
    void writeError(const QString &text);

    CliOutput m_output;
    CliOutput m_error;
    const bool m_hasColor;
};
