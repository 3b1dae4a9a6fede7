// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A column that a file can be imported into.
struct DXImportTableColumnModel
{
    QString columnName;
    /// The type as the user reads it.
    QString dataTypeDisplay;
    bool allowsNulls = true;
};

/// A table that a file can be imported into; drivers derive from it for what else names a table.
class DXSHARED_EXPORT DXImportTableModel
{
public:
    DXImportTableModel() = default;
    virtual ~DXImportTableModel();

    QString name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    const QList<DXImportTableColumnModel> &columns() const { return m_columns; }
    void setColumns(const QList<DXImportTableColumnModel> &columns) { m_columns = columns; }

    /// The names that lead to the table, the outermost first and its own last.
    virtual QStringList tablePath() const;
    virtual void setTablePath(const QStringList &path);

private:
    Q_DISABLE_COPY_MOVE(DXImportTableModel)

    QString m_name;
    QList<DXImportTableColumnModel> m_columns;
};
