// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/PostgresAdvancedSettings.h"

#include <QDialog>

class DXFormField;
class PostgresParameterTable;
class QCheckBox;
class QComboBox;

/// The sheet of a connection's session settings, of the parameters that connecting takes, and of
/// whether the tree groups by schema. [main]
class PostgresAdvancedSheet final : public QDialog
{
    Q_OBJECT

public:
    struct Values
    {
        /// As the record keeps them.
        QMap<QString, QString> parameters = {};
        QMap<QString, QString> connectionParameters = {};
        /// As in PostgresRecentConnection; the check box says the opposite.
        bool groupSchemas = true;
    };
    PostgresAdvancedSheet(const Values &values, QWidget *parent);

    /// What was accepted; before that, what was given.
    Values values() const { return m_values; }

    /// Refused, with a message at what is wrong, while something is.
    void accept() override;

private:
    const PostgresAdvancedSettings m_settings;
    Values m_values;
    QComboBox *const m_timeZone;
    PostgresParameterTable *const m_session;
    PostgresParameterTable *const m_connection;
    QCheckBox *const m_group;
    DXFormField *const m_timeZoneField;
};
