// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/FileCommands.h"

#include "desktop/ActionSet.h"
#include "desktop/documents/Documents.h"
#include "ui/DXSaveDialog.h"
#include "ui/query/DXQueryTab.h"

#include <QFileDialog>
#include <QMenu>
#include <QPointer>

FileCommands::FileCommands(const ActionSet &actions, Documents &documents, QWidget &window)
    : QObject(&window)
    , m_documents(documents)
    , m_window(window)
{
    actions.connect(ActionSet::Id::Open, [this] { chooseFileToOpen(); });
    actions.connect(ActionSet::Id::SaveAs, [this] { chooseFileToSave(); });
    actions.connect(ActionSet::Id::Save, [this] {
        DXQueryTab *const tab = m_documents.current();
        if (tab && !m_documents.save(*tab))
            chooseFileToSave();
    });
}

void FileCommands::chooseFileToOpen()
{
    auto *const dialog = new QFileDialog(&m_window, tr("Open"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilters({tr("SQL files (*.sql)"), tr("All files (*)")});
    connect(dialog, &QFileDialog::filesSelected, this, &FileCommands::openRequested);
    dialog->open();
}

void FileCommands::chooseFileToSave()
{
    if (!m_documents.current())
        return;
    DXSaveDialog::open(&m_window, tr("Save as"), DXSaveDialog::FileType::Sql,
                       [this, tab = QPointer(m_documents.current())](const QString &path) {
                           if (tab)
                               m_documents.saveAs(*tab, path);
                       });
}

void FileCommands::fillRecentFiles(QMenu &menu)
{
    menu.clear();
    const QStringList files = Documents::recentFiles();
    for (const QString &path : files)
        menu.addAction(QString(path).replace(u'&', QStringLiteral("&&")), this,
                       [this, path] { Q_EMIT openRequested({path}); });
    if (files.isEmpty())
        menu.addAction(tr("No files yet"))->setEnabled(false);
}
