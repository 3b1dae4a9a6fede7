// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DabroDBC.h"

#include "client/DXCborTexts.h"

#include <QCborArray>
#include <QCborValue>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

#include <limits>

namespace
{

constexpr QLatin1String preferencesKey("connectionSessionPreferences");
constexpr QLatin1String tunnelKey("sshTunnelModel");
constexpr QLatin1String portKey("port");

// Keys are compared within one process only, so a salt that nobody else knows makes a key that
// leaks into a dump worthless for guessing the password.
QByteArray hashOfSecret(const QString &secret)
{
    static const QByteArray salt = [] {
        QByteArray bytes(32, Qt::Uninitialized);
        for (char &byte : bytes)
            byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
        return bytes;
    }();
    return QMessageAuthenticationCode::hash(secret.toUtf8(), salt, QCryptographicHash::Sha256);
}

// CBOR reads an empty text back as a null one, which would mean an absent text here.
QString presentText(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

// A text of a record under its property name; Text is QString or const QString.
template<typename Text>
struct NamedText
{
    QLatin1String name;
    Text &text;
};

} // namespace

DabroDBC::~DabroDBC() = default;

DabroDBC::DabroDBC(const DabroDBC &other)
    : m_connectionId(other.m_connectionId)
    , m_alias(other.m_alias)
    , m_username(other.m_username)
    , m_password(other.m_password)
    , m_host(other.m_host)
    , m_database(other.m_database)
    , m_port(other.m_port)
    , m_sessionPreferences(other.m_sessionPreferences)
    , m_sshTunnelModel(other.m_sshTunnelModel
                           ? std::make_shared<DXSSHTunnelModel>(*other.m_sshTunnelModel)
                           : nullptr)
{ }

QByteArray DabroDBC::sessionKey() const
{
    const QCborArray parts{
        QString::fromLatin1(databaseClientClass().name()),
        m_host,
        m_port,
        m_username,
        m_database,
        hashOfSecret(m_password),
        DXCborTexts::encode(m_sessionPreferences),
        m_sshTunnelModel ? QCborValue(m_sshTunnelModel->encode()) : QCborValue(),
    };
    return QCborValue(parts).toCbor();
}

void DabroDBC::encode(QCborMap &archive) const
{
    for (const auto &[name, text] : std::initializer_list<NamedText<const QString>>{
             {QLatin1String("connectionId"), m_connectionId},
             {QLatin1String("alias"), m_alias},
             {QLatin1String("username"), m_username},
             {QLatin1String("password"), m_password},
             {QLatin1String("host"), m_host},
             {QLatin1String("database"), m_database},
         }) {
        if (!text.isNull())
            archive.insert(name, text);
    }
    archive.insert(portKey, m_port);
    archive.insert(preferencesKey, DXCborTexts::encode(m_sessionPreferences));
    if (m_sshTunnelModel)
        archive.insert(tunnelKey, m_sshTunnelModel->encode());
}

void DabroDBC::decode(const QCborMap &archive)
{
    for (const auto &[name, text] : std::initializer_list<NamedText<QString>>{
             {QLatin1String("connectionId"), m_connectionId},
             {QLatin1String("alias"), m_alias},
             {QLatin1String("username"), m_username},
             {QLatin1String("password"), m_password},
             {QLatin1String("host"), m_host},
             {QLatin1String("database"), m_database},
         }) {
        if (const QCborValue value = archive.value(name); value.isString())
            text = presentText(value.toString());
    }
    const qint64 port = archive.value(portKey).toInteger(m_port);
    if (port >= 0 && port <= std::numeric_limits<quint16>::max())
        m_port = static_cast<quint16>(port);
    if (const QCborValue preferences = archive.value(preferencesKey); preferences.isMap())
        m_sessionPreferences = DXCborTexts::decode(preferences.toMap());
    if (const QCborValue tunnel = archive.value(tunnelKey); tunnel.isMap())
        m_sshTunnelModel =
            std::make_shared<DXSSHTunnelModel>(DXSSHTunnelModel::decode(tunnel.toMap()));
}
