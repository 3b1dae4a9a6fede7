// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/PostgresAdvancedSettings.h"

#include <QWidget>

class DXFormField;
class QLabel;
class QPushButton;
class QTableWidget;

/// A table of names and values with buttons that add and remove rows, below a label. [main]
class PostgresParameterTable final : public QWidget
{
    Q_OBJECT

public:
    using Row = PostgresAdvancedSettings::Row;
    struct Init
    {
        QString label;
        QString accessibleName;
        QString hint;
        /// What names are completed from; none when empty.
        QStringList names = {};
        QList<Row> rows = {};
    };
    explicit PostgresParameterTable(const Init &init, QWidget *parent = nullptr);

    /// As they stand, a cell that is being edited included.
    QList<Row> rows();
    /// What is wrong, and the row to go to for it; empty for nothing.
    void setProblem(const QString &text, qsizetype row);

private:
    QWidget *createButtons();
    void appendRow(const Row &row);
    void removeRow();

    QTableWidget *const m_table;
    DXFormField *const m_field;
};
