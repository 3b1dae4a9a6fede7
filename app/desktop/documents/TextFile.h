// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// What a file of text in UTF-8 holds.
struct TextFile
{
    /// Without the byte order mark.
    QByteArray bytes = {};
    QString text = {};
    bool hasByteOrderMark = false;
    /// Why it was not read, as the end of a sentence without its stop; null when it was.
    QString failure = {};

    static TextFile failed(const QString &why) { return {.failure = why}; }
    /// Regular files up to 256 MB. [any]
    static TextFile read(const QString &path);
    /// Replaces the file whole or leaves it as it is; gives the failure, null for none. [any]
    QString write(const QString &path) const;
};
