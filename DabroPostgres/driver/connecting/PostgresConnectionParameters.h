// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QMap>
#include <QString>
#include <QStringList>

/// What libpq can be told about connecting that has no field in a record, such as connect_timeout
/// (libpq, "Parameter Key Words"). Secrets are not among it. [any]
namespace PostgresConnectionParameters
{

enum class Place {
    /// libpq has no such parameter.
    None,
    /// A field of the record, or of its TLS settings, or several of them (a service).
    Field,
    /// The settings of the session.
    Session,
    /// The record's connectionParameters().
    Parameter,
    /// A secret, or something that would make another kind of connection of it.
    Nowhere
};
/// Where a record keeps libpq's parameter name.
Place placeOf(const QString &name);
/// Those whose place is Parameter, sorted.
QStringList names();

/// Adds one parameter. *Result decides*: false for what has another place, and for a value that
/// libpq is sure to refuse.
bool add(const QString &name, const QString &value, QMap<QString, QString> &parameters,
         DXError *error);
/// An entry of a connection string that means exactly value, whatever it holds (libpq,
/// "Keyword/Value Connection Strings").
QString entry(const QString &name, const QString &value);

} // namespace PostgresConnectionParameters
