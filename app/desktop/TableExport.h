// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QString>

#include <functional>
#include <memory>

class DabroDBC;

/// Writes the rows of a table into a file, one after the other, so that it may be larger than the
/// memory.
namespace TableExport
{

struct Result
{
    /// Empty when all of it is in the file.
    DXError error;
    qint64 rowCount = 0;
};

/// Begins in the background; tablePath is quoted already. done is told what became of it; a file
/// that was at path stays as it is when it failed. [main], the call-back included
void start(const QString &tablePath, const std::shared_ptr<DabroDBC> &details, const QString &path,
           const std::function<void(const Result &result)> &done);

} // namespace TableExport
