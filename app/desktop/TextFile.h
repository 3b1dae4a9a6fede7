// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// What a file of text in UTF-8 holds.
struct TextFile
{
    QByteArray bytes;
    QString text;
    /// Why it was not read, as the end of a sentence without its stop; null when it was.
    QString failure;

    /// Regular files up to 256 MB. [any]
    static TextFile read(const QString &path);
    /// Replaces the file whole or leaves it as it is; gives the failure, null for none. [any]
    static QString write(const QString &path, const QByteArray &bytes);
};
