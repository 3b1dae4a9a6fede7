// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXSaveDialog.h"

#include <QCoreApplication>
#include <QFileDialog>

namespace
{

QString tr(const char *text)
{
    return QCoreApplication::translate("DXSaveDialog", text);
}

} // namespace

void DXSaveDialog::open(QWidget *parent, const QString &title, FileType type,
                        const std::function<void(const QString &path)> &chosen)
{
    const bool isSql = type == FileType::Sql;
    auto *const dialog = new QFileDialog(parent, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(isSql ? QStringLiteral("sql") : QStringLiteral("csv"));
    dialog->setNameFilters(
        {isSql ? tr("SQL files (*.sql)") : tr("CSV files (*.csv)"), tr("All files (*)")});
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, chosen);
    dialog->open();
}
