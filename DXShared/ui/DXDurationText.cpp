// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXDurationText.h"

#include <QLocale>

QString DXDurationText::rounded(qint64 milliseconds)
{
    if (milliseconds < 1000)
        return tr("%1 ms").arg(milliseconds);
    if (milliseconds < 60000)
        return tr("%1 s").arg(QLocale().toString(static_cast<double>(milliseconds) / 1000, 'f', 1));
    return clock(milliseconds);
}

QString DXDurationText::clock(qint64 milliseconds)
{
    const auto twoDigits = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const qint64 minutes = milliseconds / 60000;
    const QString seconds = twoDigits(milliseconds / 1000 % 60);
    if (minutes < 60)
        return QStringLiteral("%1:%2").arg(QString::number(minutes), seconds);
    return QStringLiteral("%1:%2:%3")
        .arg(QString::number(minutes / 60), twoDigits(minutes % 60), seconds);
}
