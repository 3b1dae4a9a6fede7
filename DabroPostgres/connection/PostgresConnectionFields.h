// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnelModel.h"
#include "driver/PostgresSSLDetails.h"

#include <QMap>
#include <QString>

#include <memory>

/// What the connection form shows, as its user typed it. A plain record.
struct PostgresConnectionFields
{
    QString name = {};
    /// "#RRGGBB"; empty for the colour that the name suggests.
    QString tabColor = {};
    QString host = {};
    QString port = {};
    QString user = {};
    QString password = {};
    bool rememberPassword = true;
    QString database = {};
    /// Nothing for no tunnel.
    std::shared_ptr<DXSSHTunnelModel> tunnel = {};
    /// Nothing for what the client library does by itself.
    std::shared_ptr<PostgresSSLDetails> ssl = {};
    /// As the record keeps them (PostgresSessionSettings).
    QMap<QString, QString> sessionParameters = {};
    QMap<QString, QString> connectionParameters = {};
    /// As in PostgresRecentConnection.
    bool groupSchemas = true;
};
