// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresAdvancedSheet.h"

#include "ui/DXDialogButtons.h"
#include "ui/DXFormField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimeZone>
#include <QVBoxLayout>

namespace
{

constexpr int edge = 16;
constexpr int rowGap = 8;
constexpr int groupGap = 16;
constexpr QSize firstSize(520, 420);
enum Column { NameColumn, ValueColumn, ColumnCount };

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
    , m_table(new QTableWidget(0, ColumnCount))
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
    auto *const tableLabel = new QLabel(tr("Session &parameters, set after connecting:"));
    tableLabel->setBuddy(m_table);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(rowGap);
    layout->addLayout(form);
    layout->addSpacing(groupGap - rowGap);
    layout->addWidget(tableLabel);
    layout->addWidget(createTable(), 1);
    layout->addWidget(createButtons());
    layout->addSpacing(groupGap - rowGap);
    layout->addWidget(m_group);
    layout->addSpacing(groupGap - rowGap);
    auto *const buttons = new DXDialogButtons(*this, tr("&Apply"));
    layout->addWidget(buttons);
    buttons->makeDefault(DXDialogButtons::Default::Accept);
    resize(firstSize);
    m_timeZone->setFocus();
}

QWidget *PostgresAdvancedSheet::createTable()
{
    m_table->setHorizontalHeaderLabels({tr("Name"), tr("Value")});
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    m_table->setAccessibleName(tr("Session parameters"));
    m_table->setTabKeyNavigation(false);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
                             | QAbstractItemView::EditKeyPressed
                             | QAbstractItemView::AnyKeyPressed);
    const QList<PostgresAdvancedSettings::Row> rows = m_settings.rows();
    for (const PostgresAdvancedSettings::Row &row : rows)
        addRow(row);
    m_tableField = new DXFormField(m_table);
    m_tableField->setHint(tr("For example statement_timeout and 30s."));
    return m_tableField;
}

QWidget *PostgresAdvancedSheet::createButtons()
{
    auto *const buttons = new QWidget;
    auto *const layout = new QHBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowGap);
    auto *const add = new QPushButton(tr("A&dd"));
    m_remove = new QPushButton(tr("&Remove"));
    for (QPushButton *const button : {add, m_remove})
        button->setAutoDefault(false);
    connect(add, &QPushButton::clicked, this, [this] {
        addRow({});
        m_table->setFocus();
        m_table->setCurrentCell(m_table->rowCount() - 1, NameColumn);
        m_table->editItem(m_table->currentItem());
    });
    connect(m_remove, &QPushButton::clicked, this, &PostgresAdvancedSheet::removeRow);
    const auto updateRemove = [this] { m_remove->setEnabled(m_table->currentRow() >= 0); };
    connect(m_table, &QTableWidget::currentCellChanged, this, updateRemove);
    updateRemove();
    layout->addWidget(add);
    layout->addWidget(m_remove);
    layout->addStretch(1);
    return buttons;
}

void PostgresAdvancedSheet::addRow(const PostgresAdvancedSettings::Row &row)
{
    const int at = m_table->rowCount();
    m_table->insertRow(at);
    m_table->setItem(at, NameColumn, new QTableWidgetItem(row.name));
    m_table->setItem(at, ValueColumn, new QTableWidgetItem(row.value));
}

void PostgresAdvancedSheet::removeRow()
{
    m_table->removeRow(m_table->currentRow());
    m_table->setFocus();
}

QList<PostgresAdvancedSettings::Row> PostgresAdvancedSheet::rows() const
{
    QList<PostgresAdvancedSettings::Row> rows;
    for (int row = 0; row < m_table->rowCount(); ++row)
        rows.append({.name = m_table->item(row, NameColumn)->text(),
                     .value = m_table->item(row, ValueColumn)->text()});
    return rows;
}

void PostgresAdvancedSheet::accept()
{
    // A cell that is being edited gives its text away when it loses the keyboard.
    m_table->setCurrentItem(nullptr);
    PostgresAdvancedSettings::Problem problem;
    const auto parameters = m_settings.parameters(m_timeZone->currentText(), rows(), problem);
    m_timeZoneField->setProblem(!parameters && problem.row < 0 ? problem.text : QString());
    m_tableField->setProblem(!parameters && problem.row >= 0 ? problem.text : QString());
    if (parameters) {
        m_values = {.parameters = *parameters, .groupSchemas = !m_group->isChecked()};
        QDialog::accept();
    } else if (problem.row < 0) {
        m_timeZoneField->takeFocus();
    } else {
        m_table->setFocus();
        m_table->setCurrentCell(static_cast<int>(problem.row), NameColumn);
    }
}
