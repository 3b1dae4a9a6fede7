// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresConnectionForm.h"

#include "driver/PostgresDatabaseConnectionDetails.h"
#include "ui/DXFormField.h"
#include "ui/DXLabels.h"
#include "ui/connection/DXSSHTunnelFields.h"
#include "ui/connection/DXTabColorBox.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

// Where the fields of the form stand, and what they are called.

namespace
{

constexpr int rowGap = 8;
constexpr int groupGap = 16;

QHBoxLayout *row()
{
    auto *const layout = new QHBoxLayout;
    layout->setSpacing(rowGap);
    return layout;
}

} // namespace

void PostgresConnectionForm::nameEditors()
{
    m_address->setAccessibleName(tr("Address of the connection"));
    m_name->setAccessibleName(tr("Name of the connection"));
    m_host->setAccessibleName(tr("Host"));
    m_port->setAccessibleName(tr("Port"));
    m_user->setAccessibleName(tr("User"));
    m_password->setAccessibleName(tr("Password"));
    m_database->setAccessibleName(tr("Database"));
    m_ssl->setAccessibleName(tr("SSL settings"));
    m_advanced->setAccessibleName(tr("Advanced settings"));

    m_address->setPlaceholderText(tr("Paste postgres://… or host=… here, or into any field"));
    m_name->setPlaceholderText(tr("For example shop/production"));
    m_name->setToolTip(tr("What stands before the last / is the group in the list."));
    m_host->setPlaceholderText(tr("Name, address or socket folder"));
    m_port->setPlaceholderText(QString::number(PostgresDatabaseConnectionDetails::defaultPort));
    m_user->setPlaceholderText(tr("Your user name on this computer"));
    m_password->setPlaceholderText(tr("From ~/.pgpass, or none"));
    m_database->setPlaceholderText(tr("The one called like the user, or postgres"));
    m_password->setEchoMode(QLineEdit::Password);
    m_remember->setToolTip(tr("Kept in the desktop's secret store."));
    m_port->setFixedWidth(m_port->fontMetrics().horizontalAdvance(QStringLiteral("0000000000")));
    for (QPushButton *const button : {m_ssl, m_advanced})
        button->setAutoDefault(false);
}

QLabel *PostgresConnectionForm::addRowLabel(const QString &text, QWidget *editor)
{
    m_rowLabels.append(DXLabels::of(text, editor));
    return m_rowLabels.last();
}

QFormLayout *PostgresConnectionForm::addGroup()
{
    auto *const form = new QFormLayout;
    form->setContentsMargins(0, 0, 0, 0);
    form->setSpacing(rowGap);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    static_cast<QVBoxLayout *>(layout())->addLayout(form);
    return form;
}

void PostgresConnectionForm::createLayout()
{
    auto *const groups = new QVBoxLayout(this);
    groups->setContentsMargins(0, 0, 0, 0);
    groups->setSpacing(groupGap);
    QFormLayout *const address = addGroup();
    address->addRow(addRowLabel(tr("&Address:"), m_address), m_addressField);
    QFormLayout *const server = addGroup();
    server->addRow(addRowLabel(tr("&Name:"), m_name), createNameRow());
    server->addRow(addRowLabel(tr("&Host:"), m_host), createServerRow());
    server->addRow(addRowLabel(tr("&User:"), m_user), m_userField);
    server->addRow(addRowLabel(tr("Pass&word:"), m_password), createPasswordRow());
    server->addRow(addRowLabel(tr("&Database:"), m_database), m_databaseField);
    groups->addWidget(m_tunnel);
    QFormLayout *const sheets = addGroup();
    sheets->addRow(addRowLabel(tr("Encryption:"), m_ssl), createSheetRow(m_sslSummary, m_ssl));
    sheets->addRow(addRowLabel(tr("Sess&ion:"), m_advanced),
                   createSheetRow(m_advancedSummary, m_advanced));
    groups->addStretch(1);

    // The groups' fields begin in one line.
    int width = 0;
    for (const QLabel *const label : std::as_const(m_rowLabels))
        width = std::max(width, label->sizeHint().width());
    for (QLabel *const label : std::as_const(m_rowLabels))
        label->setMinimumWidth(width);
}

QHBoxLayout *PostgresConnectionForm::createNameRow()
{
    QHBoxLayout *const layout = row();
    layout->addWidget(m_name, 1);
    layout->addWidget(DXLabels::of(tr("&Tab colour:"), m_color));
    layout->addWidget(m_color);
    return layout;
}

QHBoxLayout *PostgresConnectionForm::createServerRow()
{
    QHBoxLayout *const layout = row();
    layout->addWidget(m_hostField, 1, Qt::AlignTop);
    layout->addWidget(DXLabels::of(tr("&Port:"), m_port), 0, Qt::AlignTop);
    layout->addWidget(m_portField, 0, Qt::AlignTop);
    return layout;
}

QHBoxLayout *PostgresConnectionForm::createPasswordRow()
{
    QHBoxLayout *const layout = row();
    layout->addWidget(m_passwordField, 1, Qt::AlignTop);
    for (QCheckBox *const box : {m_reveal, m_remember}) {
        box->setMinimumHeight(m_password->sizeHint().height());
        layout->addWidget(box, 0, Qt::AlignTop);
    }
    return layout;
}

QHBoxLayout *PostgresConnectionForm::createSheetRow(QLabel *summary, QPushButton *button)
{
    QHBoxLayout *const layout = row();
    layout->addWidget(summary, 1);
    layout->addWidget(button);
    return layout;
}
