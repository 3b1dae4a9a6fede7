// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSSHTunnelFields.h"

#include "client/secrets/DXSecurityBookmarkHelper.h"
#include "ui/DXFileField.h"
#include "ui/DXFormField.h"
#include "ui/DXLabels.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace
{

constexpr int rowGap = 8;
constexpr int indentation = 24;

bool isPort(const QString &text)
{
    bool isNumber = false;
    return text.isEmpty() || (text.toUShort(&isNumber) != 0 && isNumber);
}

} // namespace

DXSSHTunnelFields::DXSSHTunnelFields(QWidget *parent)
    : QWidget(parent)
    , m_use(new QCheckBox(tr("Connect throu&gh an SSH tunnel")))
    , m_fields(new QWidget)
    , m_host(new QLineEdit)
    , m_port(new QLineEdit)
    , m_user(new QLineEdit)
    , m_key(new DXFileField(tr("Private key of the SSH tunnel")))
    , m_hostField(new DXFormField(m_host))
    , m_portField(new DXFormField(m_port))
    , m_userField(new DXFormField(m_user))
    , m_keyField(new DXFormField(m_key))
{
    m_host->setAccessibleName(tr("SSH server"));
    m_port->setAccessibleName(tr("Port of the SSH server"));
    m_user->setAccessibleName(tr("User of the SSH server"));
    m_host->setPlaceholderText(tr("A name, an address, or a Host of ~/.ssh/config"));
    m_port->setPlaceholderText(QStringLiteral("22"));
    m_user->setPlaceholderText(tr("As in ~/.ssh/config"));
    m_key->setPlaceholderText(tr("The agent's and the configured keys"));
    m_port->setFixedWidth(m_port->fontMetrics().horizontalAdvance(QStringLiteral("0000000000")));

    auto *const server = new QHBoxLayout;
    server->setSpacing(rowGap);
    server->addWidget(m_hostField, 1);
    server->addWidget(DXLabels::of(tr("P&ort:"), m_port), 0, Qt::AlignTop);
    server->addWidget(m_portField, 0, Qt::AlignTop);
    auto *const form = new QFormLayout(m_fields);
    form->setContentsMargins(indentation, 0, 0, 0);
    form->setSpacing(rowGap);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    form->addRow(DXLabels::of(tr("SSH ser&ver:"), m_host), server);
    form->addRow(DXLabels::of(tr("SSH use&r:"), m_user), m_userField);
    form->addRow(DXLabels::of(tr("Private &key:"), m_key), m_keyField);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowGap);
    layout->addWidget(m_use, 0, Qt::AlignLeft);
    layout->addWidget(m_fields);
    connectEdits();
    showFields();
}

void DXSSHTunnelFields::connectEdits()
{
    connect(m_use, &QCheckBox::toggled, this, &DXSSHTunnelFields::showFields);
    connect(m_use, &QCheckBox::clicked, this, [this](bool isChecked) {
        if (isChecked)
            m_host->setFocus();
        Q_EMIT edited();
    });
    const auto cleared = [this](DXFormField *field) {
        return [this, field] {
            field->setProblem({});
            Q_EMIT edited();
        };
    };
    connect(m_host, &QLineEdit::textEdited, this, cleared(m_hostField));
    connect(m_port, &QLineEdit::textEdited, this, cleared(m_portField));
    connect(m_user, &QLineEdit::textEdited, this, cleared(m_userField));
    connect(m_key, &DXFileField::edited, this, cleared(m_keyField));
}

void DXSSHTunnelFields::showFields()
{
    m_fields->setVisible(m_use->isChecked());
}

void DXSSHTunnelFields::setModel(const std::shared_ptr<DXSSHTunnelModel> &model)
{
    const DXSSHTunnelModel shown = model ? *model : DXSSHTunnelModel();
    m_use->setChecked(model != nullptr);
    m_host->setText(shown.host);
    m_port->setText(shown.port == 0 ? QString() : QString::number(shown.port));
    m_user->setText(shown.username);
    m_key->setPath(DXSecurityBookmarkHelper::sharedInstance()
                       .loadSecurePath(shown.identityFile)
                       .toLocalFile());
    m_configurationFile = shown.configurationFile;
    for (DXFormField *const field : {m_hostField, m_portField, m_userField, m_keyField})
        field->setProblem({});
}

std::shared_ptr<DXSSHTunnelModel> DXSSHTunnelFields::model() const
{
    if (!m_use->isChecked())
        return {};
    return std::make_shared<DXSSHTunnelModel>(DXSSHTunnelModel{
        .host = m_host->text().trimmed(),
        .port = m_port->text().trimmed().toUShort(),
        .username = m_user->text().trimmed(),
        .identityFile = DXSecurityBookmarkHelper::sharedInstance().createSecurePath(m_key->path()),
        .configurationFile = m_configurationFile,
    });
}

DXFormField *DXSSHTunnelFields::validate()
{
    const bool isUsed = m_use->isChecked();
    const QString key = m_key->path();
    const QString host = m_host->text().trimmed();
    m_hostField->setProblem(
        isUsed && host.isEmpty()        ? tr("Name the SSH server, or switch the tunnel off.")
        : isUsed && host.contains(u' ') ? tr("\"%1\" is no name of a server.").arg(host)
                                        : QString());
    m_portField->setProblem(isUsed && !isPort(m_port->text().trimmed()) ? tr("1 to 65535")
                                                                        : QString());
    m_keyField->setProblem(isUsed && !key.isEmpty() && !QFileInfo(key).isFile()
                               ? tr("There is no file \"%1\".").arg(key)
                               : QString());
    for (DXFormField *const field : {m_hostField, m_portField, m_keyField}) {
        if (!field->problem().isEmpty())
            return field;
    }
    return nullptr;
}
