// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "driver/PostgresSSLDetails.h"

#include <QDialog>

#include <memory>

class DXFileField;
class DXFormField;
class QCheckBox;
class QComboBox;
class QFormLayout;

/// The sheet that says how a connection is encrypted, and with which files. [main]
class PostgresSSLSheet final : public QDialog
{
    Q_OBJECT

public:
    /// details may be null: the user never configured it.
    PostgresSSLSheet(const std::shared_ptr<const PostgresSSLDetails> &details, QWidget *parent);

    /// What is shown; null for what the client library does by itself.
    std::shared_ptr<PostgresSSLDetails> details() const;

    /// Refused, with a message at the field, while one is wrong.
    void accept() override;

private:
    struct File
    {
        DXFileField *file;
        DXFormField *field;
    };
    File addFile(QFormLayout &form, const QString &label, const QString &name, const QString &token,
                 const QString &placeholder);
    void fillModes(const QString &mode);
    void showMode();

    QComboBox *const m_mode;
    DXFormField *const m_modeField;
    QCheckBox *const m_compression;
    File m_key = {};
    File m_certificate = {};
    File m_rootCertificate = {};
    File m_revocationList = {};
};
