// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "core/DXGlobal.h"
#include "ui/results/DXResultArea.h"

#include <QByteArray>
#include <QString>

#include <functional>

/// The rows of a result as text, for the clipboard and for files. [any]
namespace DXResultText
{

enum class Format {
    /// Fields between tabs, without names.
    Tsv,
    /// RFC 4180, with a row of names.
    Csv,
    /// The same without them.
    CsvWithoutNames,
    /// An array with an object a row; numbers with all their digits.
    Json,
    /// A statement a row.
    Insert
};

/// What INSERT needs of the driver.
struct Dialect
{
    /// Quoted already.
    QString tableName;
    std::function<QString(const QString &name)> escapeName;
    std::function<QString(const DXValue &value)> escapeValue;
};

/// A value as grids show and copy it: bytes in hexadecimal, booleans as the client gives them; null
/// for NULL.
DXSHARED_EXPORT QString textOf(const DXValue &value);
/// Hands the area over row by row, in UTF-8, until piece answers false, which is the result then.
/// Columns of the area that a row has no cell of are empty fields between separators, no member of
/// an object, and not among an INSERT's columns. dialect is needed for Insert only.
DXSHARED_EXPORT bool write(const DXQueryResultDetails &details, Format format,
                           const DXResultArea &area, const Dialect &dialect,
                           const std::function<bool(const QByteArray &text)> &piece);
/// The same as one text.
DXSHARED_EXPORT QString text(const DXQueryResultDetails &details, Format format,
                             const DXResultArea &area, const Dialect &dialect = {});

} // namespace DXResultText
