// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/ssh/DXSSHTunnelModel.h"

#include <QCborValue>

#include <limits>

QCborMap DXSSHTunnelModel::encode() const
{
    return {
        {QStringLiteral("host"), host},
        {QStringLiteral("port"), port},
        {QStringLiteral("username"), username},
        {QStringLiteral("identityFile"), identityFile},
        {QStringLiteral("configurationFile"), configurationFile},
    };
}

DXSSHTunnelModel DXSSHTunnelModel::decode(const QCborMap &archive)
{
    const auto text = [&archive](QLatin1String name) { return archive.value(name).toString(); };
    const qint64 port = archive.value(QLatin1String("port")).toInteger();
    return {
        .host = text(QLatin1String("host")),
        .port = port < 0 || port > std::numeric_limits<quint16>::max() ? quint16(0)
                                                                       : static_cast<quint16>(port),
        .username = text(QLatin1String("username")),
        .identityFile = text(QLatin1String("identityFile")),
        .configurationFile = text(QLatin1String("configurationFile")),
    };
}
