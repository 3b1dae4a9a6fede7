// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

class ActionSet;
class Documents;
class QMenu;
class QWidget;

/// The commands that open and save the files of query tabs, with their dialogs. [main]
class FileCommands final : public QObject
{
    Q_OBJECT

public:
    FileCommands(const ActionSet &actions, Documents &documents, QWidget &window);

    /// Lists the files that were used last.
    void fillRecentFiles(QMenu &menu);

Q_SIGNALS:
    void openRequested(const QStringList &paths);

private:
    void chooseFileToOpen();
    void chooseFileToSave();

    Documents &m_documents;
    QWidget &m_window;
};
