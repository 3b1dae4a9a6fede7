// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TextFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QStringDecoder>

namespace
{

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
        return {{}, {}, tr("it is not a regular file")};
    if (file.size() > largest)
        return {{}, {}, tr("it is larger than %1").arg(QLocale().formattedDataSize(largest))};
    if (!file.open(QFile::ReadOnly))
        return {{}, {}, file.errorString()};
    const QByteArray bytes = file.readAll();
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        return {{}, {}, tr("it is not a text in UTF-8")};
    return {bytes, text, {}};
}

QString TextFile::write(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    const bool isWritten =
        file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}
