// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/PostgresConnectionFormController.h"
#include "ui/connection/DXConnectionForm.h"

#include <memory>

class DXFormField;
class DXSSHTunnelFields;
class DXTabColorBox;
class QCheckBox;
class QFormLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// The form of a PostgreSQL connection. An address that is pasted into any of its fields fills them
/// all. [main]
class PostgresConnectionForm final : public DXConnectionForm
{
    Q_OBJECT

public:
    explicit PostgresConnectionForm(QWidget *parent = nullptr);
    ~PostgresConnectionForm() override;

    void setRecord(const SQLRecentConnection &record) override;
    Record record() const override;
    bool validate() override;
    void showFailure(const DXError &error) override;
    void askForPassword(const QString &message) override;
    void takeFocus() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Controller = PostgresConnectionFormController;
    using Fields = PostgresConnectionFields;
    using Field = Controller::Field;

    void nameEditors();
    void createLayout();
    QFormLayout *addGroup();
    QLabel *addRowLabel(const QString &text, QWidget *editor);
    QHBoxLayout *createNameRow();
    QHBoxLayout *createServerRow();
    QHBoxLayout *createPasswordRow();
    QHBoxLayout *createSheetRow(QLabel *summary, QPushButton *button);
    void connectEdits();
    void watchForAddress(QLineEdit *line);
    void readAddress(const QString &text);
    /// False when there is none.
    bool readTypedAddress();
    void addressRead(const std::optional<Fields> &read, const DXError &error);
    void setFields(const Fields &fields);
    Fields fields() const;
    void setProblems(const Controller::Problems &problems);
    DXFormField *fieldOf(Field field) const;
    void showSummaries();
    void openSSLSheet();
    void openAdvancedSheet();

    QString m_connectionId;
    // What has no field of its own.
    Fields m_kept;
    QList<QLabel *> m_rowLabels;
    QLineEdit *const m_address;
    QLineEdit *const m_name;
    DXTabColorBox *const m_color;
    QLineEdit *const m_host;
    QLineEdit *const m_port;
    QLineEdit *const m_user;
    QLineEdit *const m_password;
    QLineEdit *const m_database;
    QCheckBox *const m_remember;
    QCheckBox *const m_reveal;
    DXSSHTunnelFields *const m_tunnel;
    QLabel *const m_sslSummary;
    QPushButton *const m_ssl;
    QLabel *const m_advancedSummary;
    QPushButton *const m_advanced;
    DXFormField *const m_addressField;
    DXFormField *const m_hostField;
    DXFormField *const m_portField;
    DXFormField *const m_userField;
    DXFormField *const m_passwordField;
    DXFormField *const m_databaseField;
    // While an address is read; another one takes its place.
    std::shared_ptr<char> m_reading;
};
