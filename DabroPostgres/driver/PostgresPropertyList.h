// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// Reads the property lists among the driver's resources. What is missing or no property list of
/// the kind reads as empty. [any]
namespace PostgresPropertyList
{

/// The texts of the array in the resource called name.
QStringList array(const QString &name);
/// The texts of the dictionary in the resource called name, by key.
QHash<QString, QString> dictionary(const QString &name);

} // namespace PostgresPropertyList
