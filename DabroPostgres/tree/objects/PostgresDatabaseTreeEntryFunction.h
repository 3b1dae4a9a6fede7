// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// A function, procedure or aggregate: one overload of its name.
class PostgresDatabaseTreeEntryFunction final : public DXDatabaseTreeEntry
{
public:
    struct Init
    {
        QString functionName;
        /// The argument list as text; empty without arguments or where it is not known.
        QString overload = {};
        QString schema = {};
        QString defaultSchema = {};
        int displaySchema = 0;
    };
    explicit PostgresDatabaseTreeEntryFunction(const Init &init);

    QString functionName() const { return m_functionName; }
    QString functionOverload() const { return m_functionOverload; }
    QString schema() const { return m_schema; }
    bool shouldDisplaySchema() const { return m_shouldDisplaySchema; }

    QString displayName() const override;
    QString imageName() const override;
    DXMenu menu() override;
    /// The name alone: the display name that was set, not the one that is shown.
    QString dragDropString() const override { return DXDatabaseTreeEntry::displayName(); }
    void onDoubleClicked() override { cmdDown(); }
    void cmdDown() override;
    QString tableCellIdentifier() const override;
    int tableCellHeight() const override { return 23; }
    void prepareCell(ColumnDetailsTableCellView &cell) const override;

private:
    std::shared_ptr<DXQueryLoader> queryLoaderForAlter() const;

    const QString m_functionName;
    const QString m_functionOverload;
    const QString m_schema;
    const bool m_shouldDisplaySchema;
};
