// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "editing/DXImportTableModel.h"

#include <memory>

class DabroDBC;

/// What was found in one column of a file.
struct DXDataTypeDetectorResult
{
    enum class DataType { Text = 0, Numeric = 1 };

    DataType dataType = DataType::Text;
    bool isDecimal = false;
    /// The largest number of a numeric column.
    qint64 maxNumericValue = 0;
    /// The length of the longest text, in characters.
    qint64 maxLength = 0;
};

/// What a driver knows about importing a file: which types its columns get and which tables are
/// there. Belongs to the wizard.
class DXSHARED_EXPORT DXDatabaseImportHelper
{
public:
    virtual ~DXDatabaseImportHelper();

    /// One type a column, at the same index. [any]
    virtual QStringList mapDataTypes(const QList<DXDataTypeDetectorResult> &results) const = 0;
    /// The tables of the database with their columns. *Slot decides*: those that were read. The
    /// selector is `tablesForImportMapper:`. [background]
    virtual QList<std::shared_ptr<DXImportTableModel>> tablesForImportMapper(DXError *error) = 0;
    /// [any]
    virtual std::shared_ptr<DXImportTableModel>
    createImportTableModelWithPath(const QStringList &path) const = 0;

protected:
    DXDatabaseImportHelper() = default;

private:
    Q_DISABLE_COPY_MOVE(DXDatabaseImportHelper)
};
