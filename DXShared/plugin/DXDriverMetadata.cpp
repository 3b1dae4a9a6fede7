// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/DXDriverMetadata.h"

#include <QJsonArray>

namespace
{

constexpr auto domain = QLatin1String("driverLoader.metadata");

void reportKey(DXError *error, const QString &key, const QString &expected)
{
    const QString text = QStringLiteral("Its description lacks \"%1\", which must be %2.");
    DXError::report(error, DXError(domain, 0, text.arg(key, expected)));
}

bool readText(const QJsonObject &object, const QString &key, QString &text, DXError *error)
{
    text = object.value(key).toString();
    if (!text.isEmpty())
        return true;
    reportKey(error, key, QStringLiteral("a text"));
    return false;
}

bool readTexts(const QJsonObject &object, const QString &key, QStringList &texts, DXError *error)
{
    const QJsonArray values = object.value(key).toArray();
    for (const auto &value : values)
        texts.append(value.toString());
    if (!texts.isEmpty() && !texts.contains(QString()))
        return true;
    reportKey(error, key, QStringLiteral("a list of texts"));
    return false;
}

} // namespace

std::optional<DXDriverMetadata> DXDriverMetadata::fromJson(const QJsonObject &object,
                                                           DXError *error)
{
    DXDriverMetadata metadata;
    const QString versionKey = QStringLiteral("interfaceVersion");
    metadata.interfaceVersion = object.value(versionKey).toInt();
    if (metadata.interfaceVersion <= 0) {
        reportKey(error, versionKey, QStringLiteral("a whole number above zero"));
        return std::nullopt;
    }
    if (!readText(object, QStringLiteral("identifier"), metadata.identifier, error)
        || !readText(object, QStringLiteral("displayName"), metadata.displayName, error)
        || !readText(object, QStringLiteral("version"), metadata.version, error)
        || !readTexts(object, QStringLiteral("schemes"), metadata.schemes, error))
        return std::nullopt;
    return metadata;
}
