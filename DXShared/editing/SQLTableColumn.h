// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

#include <memory>
#include <optional>

/// A column of a table as it is shown and designed; drivers derive from it for what only they know.
/// Belongs to the table that holds it.
class DXSHARED_EXPORT SQLTableColumn
{
public:
    SQLTableColumn() = default;
    virtual ~SQLTableColumn();

    virtual std::shared_ptr<SQLTableColumn> copy() const;
    virtual bool isPrimaryKey() const { return m_isPrimaryKey; }
    void setIsPrimaryKey(bool isPrimaryKey) { m_isPrimaryKey = isPrimaryKey; }

    QString columnName;
    QString columnType;
    /// The length or precision; nothing when the type takes none.
    std::optional<int> columnSize;
    /// The default's expression; null when the column has none.
    QString columnDefault;
    bool isNullable = true;
    bool isAutoIncrement = false;

protected:
    SQLTableColumn(const SQLTableColumn &other) = default;
    SQLTableColumn &operator=(const SQLTableColumn &) = delete;

private:
    bool m_isPrimaryKey = false;
};
