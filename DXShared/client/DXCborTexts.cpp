// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXCborTexts.h"

#include <QCborValue>

QCborMap DXCborTexts::encode(const QMap<QString, QString> &texts)
{
    QCborMap map;
    for (auto it = texts.cbegin(); it != texts.cend(); ++it)
        map.insert(it.key(), it.value());
    return map;
}

QMap<QString, QString> DXCborTexts::decode(const QCborMap &map)
{
    QMap<QString, QString> texts;
    for (const auto &[key, value] : map) {
        if (key.isString() && value.isString())
            texts.insert(key.toString(), value.toString());
    }
    return texts;
}
