// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresParameterTable.h"

#include "ui/DXFormField.h"

#include <QCompleter>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>

namespace
{

constexpr int rowGap = 8;
constexpr int visibleRows = 3;
enum Column { NameColumn, ValueColumn, ColumnCount };

/// Completes names from a list.
class NameDelegate final : public QStyledItemDelegate
{
public:
    NameDelegate(const QStringList &names, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_names(names)
    { }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override
    {
        QWidget *const editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto *const line = qobject_cast<QLineEdit *>(editor)) {
            auto *const completer = new QCompleter(m_names, line);
            completer->setFilterMode(Qt::MatchContains);
            completer->setCaseSensitivity(Qt::CaseInsensitive);
            line->setCompleter(completer);
        }
        return editor;
    }

private:
    const QStringList m_names;
};

} // namespace

PostgresParameterTable::PostgresParameterTable(const Init &init, QWidget *parent)
    : QWidget(parent)
    , m_table(new QTableWidget(0, ColumnCount))
    , m_field(new DXFormField(m_table))
{
    m_table->setHorizontalHeaderLabels({tr("Name"), tr("Value")});
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->verticalHeader()->hide();
    const int rowHeight = m_table->fontMetrics().height() + 8;
    m_table->verticalHeader()->setDefaultSectionSize(rowHeight);
    m_table->setMinimumHeight(rowHeight * (visibleRows + 1));
    m_table->setAccessibleName(init.accessibleName);
    m_table->setTabKeyNavigation(false);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
                             | QAbstractItemView::EditKeyPressed
                             | QAbstractItemView::AnyKeyPressed);
    if (!init.names.isEmpty())
        m_table->setItemDelegateForColumn(NameColumn, new NameDelegate(init.names, m_table));
    for (const Row &row : init.rows)
        appendRow(row);
    m_field->setHint(init.hint);

    auto *const label = new QLabel(init.label);
    label->setBuddy(m_table);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowGap);
    layout->addWidget(label);
    layout->addWidget(m_field, 1);
    layout->addWidget(createButtons());
}

QWidget *PostgresParameterTable::createButtons()
{
    auto *const buttons = new QWidget;
    auto *const layout = new QHBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowGap);
    auto *const add = new QPushButton(tr("Add"));
    auto *const remove = new QPushButton(tr("Remove"));
    for (QPushButton *const button : {add, remove}) {
        button->setAutoDefault(false);
        button->setAccessibleDescription(m_table->accessibleName());
        layout->addWidget(button);
    }
    layout->addStretch(1);
    connect(add, &QPushButton::clicked, this, [this] {
        appendRow({});
        m_table->setFocus();
        m_table->setCurrentCell(m_table->rowCount() - 1, NameColumn);
        m_table->editItem(m_table->currentItem());
    });
    connect(remove, &QPushButton::clicked, this, &PostgresParameterTable::removeRow);
    const auto updateRemove = [this, remove] { remove->setEnabled(m_table->currentRow() >= 0); };
    connect(m_table, &QTableWidget::currentCellChanged, this, updateRemove);
    updateRemove();
    return buttons;
}

void PostgresParameterTable::appendRow(const Row &row)
{
    const int at = m_table->rowCount();
    m_table->insertRow(at);
    m_table->setItem(at, NameColumn, new QTableWidgetItem(row.name));
    m_table->setItem(at, ValueColumn, new QTableWidgetItem(row.value));
}

void PostgresParameterTable::removeRow()
{
    m_table->removeRow(m_table->currentRow());
    m_table->setFocus();
}

QList<PostgresParameterTable::Row> PostgresParameterTable::rows()
{
    // A cell that is being edited gives its text away when it loses the keyboard.
    m_table->setCurrentItem(nullptr);
    QList<Row> rows;
    for (int row = 0; row < m_table->rowCount(); ++row)
        rows.append({.name = m_table->item(row, NameColumn)->text(),
                     .value = m_table->item(row, ValueColumn)->text()});
    return rows;
}

void PostgresParameterTable::setProblem(const QString &text, qsizetype row)
{
    m_field->setProblem(text);
    if (text.isEmpty())
        return;
    m_table->setFocus();
    m_table->setCurrentCell(static_cast<int>(row), NameColumn);
}
