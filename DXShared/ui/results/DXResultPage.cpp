// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultPage.h"

#include "ui/DXSaveDialog.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultModel.h"
#include "ui/results/DXResultOutput.h"

#include <QMenu>
#include <QVBoxLayout>

DXResultPage::DXResultPage(const Init &init, QWidget *parent)
    : QWidget(parent)
    , m_details(init.details)
    , m_dialect(init.dialect)
    , m_output(init.output)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

qsizetype DXResultPage::rowCount() const
{
    return m_details->rows()->rowCount();
}

void DXResultPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_grid)
        return;
    m_grid = new DXResultGrid(m_details);
    layout()->addWidget(m_grid);
    setFocusProxy(m_grid);
    m_grid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_grid, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        auto menu = createMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu.release()->popup(m_grid->viewport()->mapToGlobal(position));
    });
    connect(m_grid, &DXResultGrid::copyRequested, this,
            [this] { copy(DXResultText::Format::Tsv); });
    connect(m_grid, &DXResultGrid::valueRequested, this, [this](const QModelIndex &index) {
        Q_EMIT valueRequested(m_details->columnNames().value(index.column()),
                              m_grid->resultModel().value(index.row(), index.column()));
    });
}

std::unique_ptr<QMenu> DXResultPage::createMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    const auto add = [&menu, this](const QString &title, DXResultText::Format format) {
        menu->addAction(title, this, [this, format] { copy(format); });
    };
    add(tr("Copy"), DXResultText::Format::Tsv);
    add(tr("Copy as CSV"), DXResultText::Format::Csv);
    add(tr("Copy as JSON"), DXResultText::Format::Json);
    add(tr("Copy as INSERT"), DXResultText::Format::Insert);
    menu->addSeparator();
    QAction *const view = menu->addAction(
        tr("View value"), this, [this] { Q_EMIT m_grid->valueRequested(m_grid->currentIndex()); });
    view->setEnabled(m_grid && m_grid->currentIndex().isValid());
    menu->addAction(tr("Select all"), this, [this] { m_grid->selectAll(); });
    menu->addSeparator();
    menu->addAction(tr("Save as CSV…"), this, &DXResultPage::saveAsCsv);
    return menu;
}

void DXResultPage::copy(DXResultText::Format format)
{
    if (m_grid)
        m_output.copy(m_details, format, m_grid->selectedArea(), m_dialect);
}

void DXResultPage::saveAsCsv()
{
    DXSaveDialog::open(this, tr("Save as CSV"), DXSaveDialog::FileType::Csv,
                       [this](const QString &path) { writeCsv(path); });
}

void DXResultPage::writeCsv(const QString &path)
{
    m_output.saveCsv(m_details, path);
}
