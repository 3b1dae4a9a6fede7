// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QMap>
#include <QString>

/// Server settings on their way into a record's connectionSessionPreferences(), each value written
/// so that the statement made of it (SET name TO value) means exactly what was asked for, whatever
/// the value holds. [any]
namespace PostgresSessionSettings
{

/// Adds one setting. *Result decides*: false for a name that is none, and for what would break the
/// session (text always travels as UTF-8).
bool add(const QString &name, const QString &value, QMap<QString, QString> &preferences,
         DXError *error);
/// What add() was given to write value, for people to edit: add() makes the same of it again. value
/// itself when it was not written by add().
QString plainValue(const QString &name, const QString &value);
/// Adds the settings of a server's command line, as libpq's options parameter takes it: "-c
/// name=value" and "--name=value". *Result decides*: false for any other switch.
bool addOptions(const QString &options, QMap<QString, QString> &preferences, DXError *error);

} // namespace PostgresSessionSettings
