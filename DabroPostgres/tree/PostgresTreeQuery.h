// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

/// What loads of the tree's nodes share. [any]
namespace PostgresTreeQuery
{

/// The title of a named query for a server: title, or its "_Pre8.4" twin when version is older than
/// 8.4; an unknown (null) version is new.
QString titleFor(const QString &title, const QString &version);

/// How every load fails: logs failure in the load's own domain, with the text of the query, and
/// reports it. Nothing when failure is empty.
void reportFailure(const DXError &failure, const QString &domain, const QString &query,
                   DXError *error);

} // namespace PostgresTreeQuery
