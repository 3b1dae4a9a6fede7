// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnelModel.h"
#include "core/DXGlobal.h"

#include <QCborMap>
#include <QDateTime>
#include <QMap>
#include <QString>

#include <memory>

class DabroDBC;

/// One saved connection. A driver adds what its servers need besides. A plain record. [main]
class DXSHARED_EXPORT SQLRecentConnection
{
public:
    virtual ~SQLRecentConnection();

    /// A new identity.
    static QString createConnectionId();

    QString connectionId() const { return m_connectionId; }
    void setConnectionId(const QString &connectionId) { m_connectionId = connectionId; }
    QString alias() const { return m_alias; }
    void setAlias(const QString &alias) { m_alias = alias; }
    QString serverHost() const { return m_serverHost; }
    void setServerHost(const QString &host) { m_serverHost = host; }
    QString username() const { return m_username; }
    void setUsername(const QString &username) { m_username = username; }
    QString database() const { return m_database; }
    void setDatabase(const QString &database) { m_database = database; }
    quint16 serverPort() const { return m_serverPort; }
    void setServerPort(quint16 port) { m_serverPort = port; }
    /// Stored only when rememberPassword().
    QString password() const { return m_password; }
    void setPassword(const QString &password) { m_password = password; }
    bool rememberPassword() const { return m_rememberPassword; }
    void setRememberPassword(bool remember) { m_rememberPassword = remember; }
    /// When it was last used; invalid for never.
    QDateTime connectionDate() const { return m_connectionDate; }
    void setConnectionDate(const QDateTime &date) { m_connectionDate = date; }
    QMap<QString, QString> connectionSessionParameters() const { return m_sessionParameters; }
    void setConnectionSessionParameters(const QMap<QString, QString> &parameters)
    {
        m_sessionParameters = parameters;
    }
    std::shared_ptr<DXSSHTunnelModel> sshTunnelDetails() const { return m_sshTunnelDetails; }
    void setSshTunnelDetails(const std::shared_ptr<DXSSHTunnelModel> &details)
    {
        m_sshTunnelDetails = details;
    }

    /// The colour of its tabs that the user chose, as "#RRGGBB"; empty for the one that the alias
    /// suggests.
    QString tabColor() const { return m_tabColor; }
    void setTabColor(const QString &color) { m_tabColor = color; }
    /// The chosen colour, or else the suggested one; null for neither.
    QString effectiveTabColor() const;

    /// The server, for lists of connections.
    virtual QString hostDisplay() const { return m_serverHost; }
    /// The names of the images for lists and for headings.
    virtual QString icon32() const = 0;
    virtual QString iconLarge() const = 0;
    /// The record to connect with.
    virtual std::shared_ptr<DabroDBC> createDatabaseConnectionDetails() const = 0;
    /// Takes everything but the identity from other, a record of the same driver.
    virtual void copyFrom(const SQLRecentConnection &other);
    /// After the record was read from the store, or saved: tells its choices to whoever keeps them
    /// by id.
    virtual void didLoad();

    /// The selectors are `encodeWithCoder:` and `initWithCoder:`. What is missing or of another
    /// kind reads as absent.
    virtual QCborMap encode() const;
    virtual void decode(const QCborMap &archive);

protected:
    SQLRecentConnection() = default;
    /// Fills the fields of details that every connection has.
    void fill(DabroDBC &details) const;

private:
    Q_DISABLE_COPY_MOVE(SQLRecentConnection)

    QString m_connectionId;
    QString m_alias;
    QString m_serverHost;
    QString m_username;
    QString m_database;
    QString m_password;
    QDateTime m_connectionDate;
    QMap<QString, QString> m_sessionParameters;
    std::shared_ptr<DXSSHTunnelModel> m_sshTunnelDetails;
    QString m_tabColor;
    quint16 m_serverPort = 0;
    bool m_rememberPassword = false;
};
