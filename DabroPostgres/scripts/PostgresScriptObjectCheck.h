// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

struct PostgresScriptObject;
class DabroDBC;

/// Looks an object up before scripts about it are written: they cannot tell one that does not exist
/// from one that is empty.
namespace PostgresScriptObjectCheck
{

/// Whether there is such an object of this kind, "table" and so on; the object's schema is the
/// default one where it was left out. *Result decides*: false with an error that tells what there
/// is instead, in domain "postgres.scriptCatalogue", or why the server could not be asked.
/// [background]
bool exists(const PostgresScriptObject &object, const QString &kind, const DabroDBC &details,
            DXError *error);

} // namespace PostgresScriptObjectCheck
