// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TreeCommands.h"

#include "client/DabroDBC.h"
#include "desktop/ScriptReceiver.h"
#include "desktop/StatusLine.h"
#include "desktop/TableExports.h"
#include "desktop/documents/Documents.h"
#include "desktop/documents/TextFile.h"
#include "query/SQLTokenizer.h"
#include "ui/DXAlwaysVisibleUserNotification.h"
#include "ui/DXFailureList.h"
#include "ui/DXSaveDialog.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryTab.h"

#include <QApplication>
#include <QClipboard>
#include <QLocale>
#include <QPointer>

namespace
{

const QLatin1String scriptKey("script");

QString tr(const char *text)
{
    return QCoreApplication::translate("TreeCommands", text);
}

bool isComment(const QString &script, const DabroDBC &details)
{
    SQLTokenizer tokens(*details.createPreParserOptions(), script, {});
    while (const auto token = tokens.next()) {
        if (!token->isBlankOrComment())
            return false;
    }
    return true;
}

} // namespace

TreeCommands::TreeCommands(const Init &init)
    : m_init(init)
{
    const TableExports &exports = init.exports;
    QObject::connect(
        &exports, &TableExports::succeeded, &init.status,
        [init](const QString &path, const QString &message) {
            init.failures.settle(path);
            // A long export is not watched.
            if (init.exports.isActiveWindow())
                init.status.announce(message);
            else
                DXAlwaysVisibleUserNotification{.title = tr("Export"), .text = message}.deliver();
        });
    QObject::connect(&exports, &TableExports::cancelled, &init.status, &StatusLine::announce);
    QObject::connect(&exports, &TableExports::failed, &init.failures,
                     [&failures = init.failures](const QString &path, const QString &headline,
                                                 const QString &details) {
                         failures.showFailure(path, headline, details);
                     });
}

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
    ScriptReceiver::load(loader, *details, [this, destination, details](const QString &script) {
        // A loader tells of its failure in a comment, of which nobody wants a copy.
        if (isComment(script, *details)) {
            m_init.failures.showFailure(scriptKey, tr("The script could not be written."),
                                        script.trimmed());
            return;
        }
        m_init.failures.settle(scriptKey);
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
    DXSaveDialog::open(&m_init.documents, tr("Save script"), DXSaveDialog::FileType::Sql,
                       [this, script](const QString &path) {
                           const QString failure = TextFile{.bytes = script.toUtf8()}.write(path);
                           if (failure.isNull()) {
                               m_init.failures.settle(path);
                               m_init.status.announce(tr("The script was saved to %1.").arg(path));
                           } else {
                               m_init.failures.showFailure(
                                   path, tr("Could not save to %1: %2.").arg(path, failure));
                           }
                       });
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
    DXSaveDialog::open(&m_init.exports, tr("Export %1").arg(tablePath), DXSaveDialog::FileType::Csv,
                       [&exports = m_init.exports, tablePath, details](const QString &path) {
                           exports.start(tablePath, details, path);
                       });
}

void TreeCommands::beep()
{
    QApplication::beep();
}
