// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/TextFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QStringDecoder>

namespace
{

const QByteArray byteOrderMark("\xef\xbb\xbf");
// An editor holds a text several times over.
constexpr qint64 largest = 256 * 1024 * 1024;

QString tr(const char *text)
{
    return QCoreApplication::translate("TextFile", text);
}

} // namespace

TextFile TextFile::read(const QString &path)
{
    QFile file(path);
    // A pipe would be waited for.
    if (file.exists() && !QFileInfo(path).isFile())
        return failed(tr("it is not a regular file"));
    if (file.size() > largest)
        return failed(tr("it is larger than %1").arg(QLocale().formattedDataSize(largest)));
    if (!file.open(QFile::ReadOnly))
        return failed(file.errorString());
    QByteArray bytes = file.readAll();
    const bool hasMark = bytes.startsWith(byteOrderMark);
    if (hasMark)
        bytes.remove(0, byteOrderMark.size());
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    // Editors end a text at a zero byte, of which UTF-16 is full.
    if (decoder.hasError() || bytes.contains('\0'))
        return failed(tr("it is not a text in UTF-8; convert it first"));
    return {.bytes = bytes, .text = text, .hasByteOrderMark = hasMark};
}

QString TextFile::write(const QString &path) const
{
    QSaveFile file(path);
    const QByteArray content = hasByteOrderMark ? byteOrderMark + bytes : bytes;
    const bool isWritten =
        file.open(QFile::WriteOnly) && file.write(content) == content.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}
