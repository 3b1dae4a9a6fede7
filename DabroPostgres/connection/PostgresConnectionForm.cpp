// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresConnectionForm.h"

#include "connection/PostgresAdvancedSheet.h"
#include "connection/PostgresSSLSheet.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresRecentConnection.h"
#include "ui/DXFormField.h"
#include "ui/DXLabels.h"
#include "ui/connection/DXSSHTunnelFields.h"
#include "ui/connection/DXTabColorBox.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace
{

// What stands in after and not in before, if it was put in at one place.
QString insertedText(const QString &before, const QString &after)
{
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype begin = 0;
    while (begin < shorter && before[begin] == after[begin])
        ++begin;
    qsizetype end = 0;
    while (end < shorter - begin
           && before[before.size() - 1 - end] == after[after.size() - 1 - end])
        ++end;
    return after.mid(begin, after.size() - end - begin);
}

} // namespace

PostgresConnectionForm::PostgresConnectionForm(QWidget *parent)
    : DXConnectionForm(parent)
    , m_address(new QLineEdit)
    , m_name(new QLineEdit)
    , m_color(new DXTabColorBox)
    , m_host(new QLineEdit)
    , m_port(new QLineEdit)
    , m_user(new QLineEdit)
    , m_password(new QLineEdit)
    , m_database(new QLineEdit)
    , m_remember(new QCheckBox(tr("Re&member")))
    , m_reveal(new QCheckBox(tr("Show")))
    , m_tunnel(new DXSSHTunnelFields)
    , m_sslSummary(DXLabels::plain())
    , m_ssl(new QPushButton(tr("SS&L…")))
    , m_advancedSummary(DXLabels::plain())
    , m_advanced(new QPushButton(tr("Advanced…")))
    , m_addressField(new DXFormField(m_address))
    , m_hostField(new DXFormField(m_host))
    , m_portField(new DXFormField(m_port))
    , m_userField(new DXFormField(m_user))
    , m_passwordField(new DXFormField(m_password))
    , m_databaseField(new DXFormField(m_database))
{
    nameEditors();
    createLayout();
    connectEdits();
}

PostgresConnectionForm::~PostgresConnectionForm() = default;

void PostgresConnectionForm::connectEdits()
{
    struct Watched
    {
        QLineEdit *line;
        DXFormField *field;
    };
    for (const Watched &watched :
         {Watched{m_address, m_addressField}, Watched{m_host, m_hostField},
          Watched{m_port, m_portField}, Watched{m_user, m_userField},
          Watched{m_password, m_passwordField}, Watched{m_database, m_databaseField},
          Watched{m_name, nullptr}}) {
        connect(watched.line, &QLineEdit::textEdited, this, [this, field = watched.field] {
            if (field)
                field->setProblem({});
            Q_EMIT edited();
        });
        watchForAddress(watched.line);
    }
    m_address->installEventFilter(this);
    connect(m_name, &QLineEdit::textChanged, m_color, &DXTabColorBox::setAlias);
    connect(m_reveal, &QCheckBox::toggled, m_password, [this](bool isRevealed) {
        m_password->setEchoMode(isRevealed ? QLineEdit::Normal : QLineEdit::Password);
    });
    connect(m_remember, &QCheckBox::clicked, this, &DXConnectionForm::edited);
    connect(m_color, &QComboBox::activated, this, &DXConnectionForm::edited);
    connect(m_tunnel, &DXSSHTunnelFields::edited, this, &DXConnectionForm::edited);
    connect(m_ssl, &QPushButton::clicked, this, &PostgresConnectionForm::openSSLSheet);
    connect(m_advanced, &QPushButton::clicked, this, &PostgresConnectionForm::openAdvancedSheet);
}

// What is typed comes letter by letter; what is pasted or dropped comes at once.
void PostgresConnectionForm::watchForAddress(QLineEdit *line)
{
    const auto before = std::make_shared<QString>();
    connect(line, &QLineEdit::textChanged, this, [this, line, before](const QString &text) {
        const QString previous = std::exchange(*before, text);
        const QString inserted = insertedText(previous, text);
        if (!line->isModified() || inserted.size() < 2)
            return;
        const auto isAddress = [this, line](const QString &candidate) {
            return line == m_password ? Controller::isConnectionURI(candidate)
                                      : Controller::isConnectionString(candidate);
        };
        // What replaced another address shares its beginning.
        const QString address = isAddress(text) ? text : inserted;
        if (!isAddress(address))
            return;
        if (line != m_address)
            line->setText(previous);
        readAddress(address);
    });
}

void PostgresConnectionForm::readAddress(const QString &text)
{
    m_reading = std::make_shared<char>();
    DXDispatch::background([this, text, reading = std::weak_ptr(m_reading)] {
        DXError error;
        const std::optional<Fields> read = Controller::read(text, &error);
        DXDispatch::main([this, read, error, reading] {
            if (!reading.expired())
                addressRead(read, error);
        });
    });
}

void PostgresConnectionForm::addressRead(const std::optional<Fields> &read, const DXError &error)
{
    m_reading.reset();
    if (!read) {
        m_addressField->setProblem(error.description());
        return;
    }
    setFields(Controller::merged(fields(), *read));
    // It may hold a password for everybody to read.
    m_address->clear();
    m_addressField->setHint(tr("The fields below are filled in from the address."));
    Q_EMIT edited();
}

bool PostgresConnectionForm::readTypedAddress()
{
    const QString text = m_address->text().trimmed();
    if (text.isEmpty())
        return false;
    readAddress(text);
    return true;
}

bool PostgresConnectionForm::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_address && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && readTypedAddress())
            return true;
    } else if (watched == m_address && event->type() == QEvent::FocusOut) {
        // It is not finished where another window or a menu takes the focus.
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            readTypedAddress();
    }
    return DXConnectionForm::eventFilter(watched, event);
}

void PostgresConnectionForm::setRecord(const SQLRecentConnection &record)
{
    m_reading.reset();
    m_connectionId = record.connectionId();
    m_address->clear();
    m_reveal->setChecked(false);
    m_addressField->setHint({});
    setFields(Controller::fieldsOf(static_cast<const PostgresRecentConnection &>(record)));
}

void PostgresConnectionForm::setFields(const Fields &fields)
{
    m_kept = fields;
    m_name->setText(fields.name);
    m_color->setAlias(fields.name);
    m_color->setColor(fields.tabColor);
    m_host->setText(fields.host);
    m_port->setText(fields.port);
    m_user->setText(fields.user);
    m_password->setText(fields.password);
    m_remember->setChecked(fields.rememberPassword);
    m_database->setText(fields.database);
    m_tunnel->setModel(fields.tunnel);
    m_addressField->setProblem({});
    setProblems({});
    showSummaries();
}

PostgresConnectionFields PostgresConnectionForm::fields() const
{
    Fields fields = Controller::withHost(m_kept, m_host->text());
    fields.name = m_name->text();
    fields.tabColor = m_color->color();
    fields.port = m_port->text();
    fields.user = m_user->text();
    fields.password = m_password->text();
    fields.rememberPassword = m_remember->isChecked();
    fields.database = m_database->text();
    fields.tunnel = m_tunnel->model();
    return fields;
}

DXConnectionForm::Record PostgresConnectionForm::record() const
{
    return Controller::recordOf(fields(), m_connectionId);
}

DXFormField *PostgresConnectionForm::fieldOf(Field field) const
{
    switch (field) {
    case Field::Host:
        return m_hostField;
    case Field::Port:
        return m_portField;
    case Field::User:
        return m_userField;
    case Field::Password:
        return m_passwordField;
    case Field::Database:
        return m_databaseField;
    }
    return nullptr;
}

void PostgresConnectionForm::setProblems(const Controller::Problems &problems)
{
    for (const Field field :
         {Field::Host, Field::Port, Field::User, Field::Password, Field::Database})
        fieldOf(field)->setProblem(problems.value(field));
    if (!problems.isEmpty())
        fieldOf(problems.firstKey())->takeFocus();
}

bool PostgresConnectionForm::validate()
{
    // What was typed is to be seen in the fields before anything connects there.
    if (readTypedAddress())
        return false;
    const Controller::Problems problems = Controller::problemsOf(fields());
    DXFormField *const inTunnel = m_tunnel->validate();
    setProblems(problems);
    if (problems.isEmpty() && inTunnel)
        inTunnel->takeFocus();
    return problems.isEmpty() && !inTunnel;
}

void PostgresConnectionForm::showFailure(const DXError &error)
{
    setProblems(Controller::problemsOf(error));
}

void PostgresConnectionForm::askForPassword(const QString &message)
{
    setProblems({{Field::Password, message}});
}

void PostgresConnectionForm::takeFocus()
{
    QLineEdit *const first = m_host->text().isEmpty() ? m_address : m_name;
    first->setFocus(Qt::OtherFocusReason);
    first->selectAll();
}

void PostgresConnectionForm::showSummaries()
{
    m_sslSummary->setText(Controller::sslSummary(m_kept.ssl));
    m_advancedSummary->setText(Controller::sessionSummary(m_kept));
}

void PostgresConnectionForm::openSSLSheet()
{
    auto *const sheet = new PostgresSSLSheet(m_kept.ssl, window());
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &QDialog::accepted, this, [this, sheet] {
        m_kept.ssl = sheet->details();
        showSummaries();
        Q_EMIT edited();
    });
    sheet->open();
}

void PostgresConnectionForm::openAdvancedSheet()
{
    m_kept = fields();
    auto *const sheet =
        new PostgresAdvancedSheet({.parameters = m_kept.sessionParameters,
                                   .connectionParameters = m_kept.connectionParameters,
                                   .groupSchemas = m_kept.groupSchemas},
                                  window());
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &QDialog::accepted, this, [this, sheet] {
        m_kept.sessionParameters = sheet->values().parameters;
        m_kept.connectionParameters = sheet->values().connectionParameters;
        m_kept.groupSchemas = sheet->values().groupSchemas;
        showSummaries();
        Q_EMIT edited();
    });
    sheet->open();
}
