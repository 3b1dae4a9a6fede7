// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// An editor's text as a journal keeps it.
struct DXTextRecord
{
    /// Names the text; unique, and the same for as long as its editor is open.
    QString id = {};
    QString title = {};
    /// The file that the editor shows; null for one that was never saved.
    QString filePath = {};
    /// The saved connection of the editor; null for none.
    QString connectionId = {};
    /// The database in use there; null for the connection's own.
    QString database = {};
    /// Whether each statement there waits for a commit.
    bool commitsManually = false;
    QString text = {};
    qsizetype caret = 0;
    /// Whether the text differs from the file.
    bool isModified = false;
    /// A digest of what the file held when it was last read or written here.
    QByteArray fileDigest = {};
    /// Where the editor stands among the others; records come back in this order.
    qint32 order = 0;

    friend bool operator==(const DXTextRecord &, const DXTextRecord &) = default;
};
