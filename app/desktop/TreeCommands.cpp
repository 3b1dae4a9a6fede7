// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TreeCommands.h"

#include "client/DabroDBC.h"
#include "desktop/Documents.h"
#include "desktop/ScriptReceiver.h"
#include "desktop/StatusLine.h"
#include "desktop/TableExport.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryTab.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QPointer>
#include <QSaveFile>

namespace
{

QString tr(const char *text)
{
    return QCoreApplication::translate("TreeCommands", text);
}

} // namespace

QWidget *TreeCommands::targetWindow()
{
    return m_init.documents.window();
}

void TreeCommands::addNewQueryTab(const QString &query, const std::shared_ptr<DabroDBC> &details,
                                  QueryTab mode)
{
    DXQueryTab *const tab = m_init.documents.add(details->copy(), query);
    if (mode == QueryTab::OpenAndExecute)
        tab->runAll();
}

void TreeCommands::addNewQueryTabWithLoader(const std::shared_ptr<DXQueryLoader> &loader,
                                            const std::shared_ptr<DabroDBC> &details, QueryTab mode)
{
    QPointer<DXQueryTab> tab = m_init.documents.add(details->copy());
    ScriptReceiver::load(loader, *details, [tab, mode](const QString &script) {
        if (!tab)
            return;
        // What was typed meanwhile stays, behind the script.
        tab->editor().setCaretPosition(0);
        tab->editor().insertText(script);
        if (mode == QueryTab::OpenAndExecute)
            tab->runAll();
    });
}

void TreeCommands::sendScript(const std::shared_ptr<DXQueryLoader> &loader,
                              const std::shared_ptr<DabroDBC> &details,
                              ScriptDestination destination)
{
    ScriptReceiver::load(loader, *details, [this, destination](const QString &script) {
        if (destination == ScriptDestination::File) {
            saveScript(script);
            return;
        }
        QApplication::clipboard()->setText(script);
        m_init.status.announce(tr("The script is on the clipboard."));
    });
}

void TreeCommands::saveScript(const QString &script)
{
    auto *const dialog = new QFileDialog(&m_init.documents, tr("Save script"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("sql"));
    dialog->setNameFilters({tr("SQL files (*.sql)"), tr("All files (*)")});
    QObject::connect(
        dialog, &QFileDialog::fileSelected, dialog, [this, script](const QString &path) {
            QSaveFile file(path);
            const QByteArray bytes = script.toUtf8();
            const bool isSaved =
                file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
            m_init.status.announce(
                isSaved ? tr("The script was saved to %1.").arg(path)
                        : tr("Could not save to %1: %2.").arg(path, file.errorString()));
        });
    dialog->open();
}

void TreeCommands::alterTableNamed(const QString &tableName, const QString &schema,
                                   const std::shared_ptr<DabroDBC> &details)
{
    Q_UNUSED(details)
    m_init.status.announce(
        tr("There is no designer for %1.%2 in this version.").arg(schema, tableName));
}

void TreeCommands::openConnectionDialog(const std::shared_ptr<DabroDBC> &details)
{
    m_init.editConnection(details);
}

void TreeCommands::disconnectFrom(const std::shared_ptr<DabroDBC> &details)
{
    m_init.disconnect(details);
}

void TreeCommands::importInto(const std::shared_ptr<DabroDBC> &details)
{
    m_init.status.announce(
        tr("Files cannot be imported into %1 in this version.").arg(details->database()));
}

void TreeCommands::exportTableAsCSV(const QString &tablePath,
                                    const std::shared_ptr<DabroDBC> &details)
{
    auto *const dialog = new QFileDialog(&m_init.documents, tr("Export %1").arg(tablePath));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->setNameFilters({tr("CSV files (*.csv)"), tr("All files (*)")});
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog,
                     [this, tablePath, details](const QString &path) {
                         m_init.status.announce(tr("Exporting %1.").arg(tablePath));
                         TableExport::start(tablePath, details, path,
                                            [&status = m_init.status](const QString &message) {
                                                status.announce(message);
                                            });
                     });
    dialog->open();
}

void TreeCommands::beep()
{
    QApplication::beep();
}
