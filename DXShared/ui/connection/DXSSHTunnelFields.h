// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnelModel.h"
#include "core/DXGlobal.h"

#include <QWidget>

#include <memory>

class DXFileField;
class DXFormField;
class QCheckBox;
class QLineEdit;

/// The part of a connection form that says through which SSH server the database is reached: a
/// check box, and below it, while it is checked, the fields of a tunnel. [main]
class DXSHARED_EXPORT DXSSHTunnelFields final : public QWidget
{
    Q_OBJECT

public:
    explicit DXSSHTunnelFields(QWidget *parent = nullptr);

    void setModel(const std::shared_ptr<DXSSHTunnelModel> &model);
    /// Nothing while no tunnel is wanted; fields that are not shown are kept from setModel().
    std::shared_ptr<DXSSHTunnelModel> model() const;
    /// Marks what cannot be; the first field that is wrong, or null.
    DXFormField *validate();

Q_SIGNALS:
    /// By the user.
    void edited();

private:
    QLineEdit *addLine(const QString &name);
    void connectEdits();
    void showFields();

    QCheckBox *const m_use;
    QWidget *const m_fields;
    QLineEdit *const m_host;
    QLineEdit *const m_port;
    QLineEdit *const m_user;
    DXFileField *const m_key;
    DXFormField *const m_hostField;
    DXFormField *const m_portField;
    DXFormField *const m_userField;
    DXFormField *const m_keyField;
    QString m_configurationFile;
};
