// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/PostgresConnectionFields.h"
#include "core/DXError.h"

#include <QCoreApplication>
#include <QMap>
#include <QString>

#include <memory>
#include <optional>

class PostgresDatabaseConnectionDetails;
class PostgresRecentConnection;

/// What the connection form does that needs no window: records to fields and back, what is wrong
/// with fields, and the reading of pasted addresses. [any] unless it says otherwise.
class PostgresConnectionFormController final
{
    Q_DECLARE_TR_FUNCTIONS(PostgresConnectionFormController)

public:
    using Fields = PostgresConnectionFields;
    enum class Field { Host, Port, User, Password, Database };
    /// By field, one sentence each.
    using Problems = QMap<Field, QString>;

    PostgresConnectionFormController() = delete;

    static Fields fieldsOf(const PostgresRecentConnection &record);
    /// A new record of fields under connectionId. The fields have no problems. [main]
    static std::shared_ptr<PostgresRecentConnection> recordOf(const Fields &fields,
                                                              const QString &connectionId);
    /// A record to edit details with, under their id or else a new one. [main]
    static std::shared_ptr<PostgresRecentConnection>
    recordOf(const PostgresDatabaseConnectionDetails &details);

    static Problems problemsOf(const Fields &fields);
    /// Whether text is a URI or a key/value string rather than what belongs into one field.
    static bool isConnectionString(const QString &text);
    /// Whether it is a URI of our kind, which even a password never looks like.
    static bool isConnectionURI(const QString &text);
    /// What text describes; nothing, with error set, when it cannot be read. It may read files and
    /// look up users. [background]
    static std::optional<Fields> read(const QString &text, DXError *error);
    /// fields with what read describes; what an address never holds, and what this one leaves
    /// open, stays.
    static Fields merged(Fields fields, const Fields &read);
    /// fields with another host, and without the address that the former one was given.
    static Fields withHost(Fields fields, const QString &host);
    /// The field that made connecting fail, and what to say there; nothing when the error does not
    /// tell.
    static Problems problemsOf(const DXError &failure);

    /// How the connection is encrypted, in one line.
    static QString sslSummary(const std::shared_ptr<PostgresSSLDetails> &ssl);
    /// What the advanced settings change, in one line.
    static QString sessionSummary(const Fields &fields);
};
