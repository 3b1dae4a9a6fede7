// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// How the tree calls an object that lives in a schema. [any]
namespace PostgresTreeNaming
{

/// Whether the schema is shown before the name. displaySchema is 1 for always and -1 for automatic:
/// unless both schemas are known and equal; everything else means never.
bool shouldDisplaySchema(const QString &schema, const QString &defaultSchema, int displaySchema);

/// The name, behind its schema and a dot when that is to be shown and there is one.
QString displayName(bool shouldDisplaySchema, const QString &schema, const QString &name);

} // namespace PostgresTreeNaming
