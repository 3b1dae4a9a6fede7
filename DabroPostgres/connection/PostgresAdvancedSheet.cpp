// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresAdvancedSheet.h"

#include "connection/PostgresParameterTable.h"
#include "driver/connecting/PostgresConnectionParameters.h"
#include "ui/DXDialogButtons.h"
#include "ui/DXFormField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTimeZone>
#include <QVBoxLayout>

namespace
{

constexpr int edge = 16;
constexpr int rowGap = 8;
constexpr int groupGap = 16;
constexpr QSize firstSize(520, 600);

void fillTimeZones(QComboBox &box)
{
    box.setEditable(true);
    box.setInsertPolicy(QComboBox::NoInsert);
    box.lineEdit()->setPlaceholderText(PostgresAdvancedSheet::tr("The server's own"));
    const QList<QByteArray> zones = QTimeZone::availableTimeZoneIds();
    for (const QByteArray &zone : zones)
        box.addItem(QString::fromLatin1(zone));
    box.completer()->setCompletionMode(QCompleter::PopupCompletion);
    box.completer()->setFilterMode(Qt::MatchContains);
}

} // namespace

PostgresAdvancedSheet::PostgresAdvancedSheet(const Values &values, QWidget *parent)
    : QDialog(parent)
    , m_settings(values.parameters)
    , m_values(values)
    , m_timeZone(new QComboBox)
    , m_session(
          new PostgresParameterTable({.label = tr("Session &parameters, set after connecting:"),
                                      .accessibleName = tr("Session parameters"),
                                      .hint = tr("For example statement_timeout and 30s."),
                                      .rows = m_settings.rows()}))
    , m_connection(new PostgresParameterTable(
          {.label = tr("&Connection parameters, of the client library:"),
           .accessibleName = tr("Connection parameters"),
           .hint = tr("For example connect_timeout and 10."),
           .names = PostgresConnectionParameters::names(),
           .rows = PostgresAdvancedSettings::rowsOf(values.connectionParameters)}))
    , m_group(new QCheckBox(tr("&Group the objects of the tree by schema")))
    , m_timeZoneField(new DXFormField(m_timeZone))
{
    setWindowTitle(tr("Advanced connection settings"));
    setWindowModality(Qt::WindowModal);
    fillTimeZones(*m_timeZone);
    m_timeZone->setCurrentText(m_settings.timeZone());
    m_timeZone->setAccessibleName(tr("Time zone of the session"));
    m_group->setChecked(!values.groupSchemas);

    auto *const form = new QFormLayout;
    form->setSpacing(rowGap);
    auto *const zoneLabel = new QLabel(tr("Time &zone:"));
    zoneLabel->setBuddy(m_timeZone);
    form->addRow(zoneLabel, m_timeZoneField);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(rowGap);
    layout->addLayout(form);
    layout->addSpacing(groupGap - rowGap);
    layout->addWidget(m_session, 1);
    layout->addSpacing(groupGap - rowGap);
    layout->addWidget(m_connection, 1);
    layout->addSpacing(groupGap - rowGap);
    layout->addWidget(m_group);
    layout->addSpacing(groupGap - rowGap);
    auto *const buttons = new DXDialogButtons(*this, tr("&Apply"));
    layout->addWidget(buttons);
    buttons->makeDefault(DXDialogButtons::Default::Accept);
    resize(firstSize);
    m_timeZone->setFocus();
}

void PostgresAdvancedSheet::accept()
{
    PostgresAdvancedSettings::Problem session;
    PostgresAdvancedSettings::Problem connection;
    const auto parameters =
        m_settings.parameters(m_timeZone->currentText(), m_session->rows(), session);
    const auto connectionParameters =
        PostgresAdvancedSettings::connectionParameters(m_connection->rows(), connection);
    const bool isZonesProblem = session.row < 0;
    m_timeZoneField->setProblem(isZonesProblem ? session.text : QString());
    // The first problem takes the keyboard last.
    m_connection->setProblem(connection.text, connection.row);
    m_session->setProblem(isZonesProblem ? QString() : session.text, session.row);
    if (!parameters && isZonesProblem)
        m_timeZoneField->takeFocus();
    if (!parameters || !connectionParameters)
        return;
    m_values = {.parameters = *parameters,
                .connectionParameters = *connectionParameters,
                .groupSchemas = !m_group->isChecked()};
    QDialog::accept();
}
