// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/PostgresAdvancedSettings.h"

#include <QDialog>

class DXFormField;
class QCheckBox;
class QComboBox;
class QPushButton;
class QTableWidget;

/// The sheet of a connection's session settings: time zone, parameters, and whether the tree groups
/// by schema. [main]
class PostgresAdvancedSheet final : public QDialog
{
    Q_OBJECT

public:
    struct Values
    {
        /// As the record keeps them.
        QMap<QString, QString> parameters = {};
        /// As in PostgresRecentConnection; the check box says the opposite.
        bool groupSchemas = true;
    };
    PostgresAdvancedSheet(const Values &values, QWidget *parent);

    /// What was accepted; before that, what was given.
    Values values() const { return m_values; }

    /// Refused, with a message at what is wrong, while something is.
    void accept() override;

private:
    QWidget *createTable();
    QWidget *createButtons();
    void addRow(const PostgresAdvancedSettings::Row &row);
    void removeRow();
    QList<PostgresAdvancedSettings::Row> rows() const;

    const PostgresAdvancedSettings m_settings;
    Values m_values;
    QComboBox *const m_timeZone;
    QTableWidget *const m_table;
    QCheckBox *const m_group;
    DXFormField *const m_timeZoneField;
    DXFormField *m_tableField = nullptr;
    QPushButton *m_remove = nullptr;
};
