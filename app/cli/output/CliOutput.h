// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// A buffered stream onto a file descriptor that notices when nobody reads it any more. One thread
/// at a time. [any]
class CliOutput final
{
public:
    /// Does not close descriptor.
    explicit CliOutput(int descriptor);

    /// Adds text; it is written when enough is there, or by flush(). Nothing after a failure.
    void write(QByteArrayView text);
    void flush();

    bool isTerminal() const { return m_isTerminal; }
    /// Why writing failed, as errno says; 0 while it did not. EPIPE: the reader is gone.
    int failure() const { return m_failure; }

private:
    Q_DISABLE_COPY_MOVE(CliOutput)

    const int m_descriptor;
    const bool m_isTerminal;
    int m_failure = 0;
    QByteArray m_buffer;
};
