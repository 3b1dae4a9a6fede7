// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "desktop/ActionSet.h"

#include <QMainWindow>
#include <QStringList>

#include <memory>

class Appearance;
class Connections;
class DXDatabaseTreeView;
class DXFailureList;
class DXQueryTab;
class DXSavedConnectionsView;
class DabroDBC;
class ConnectionDialogs;
class Disconnection;
class DocumentJournal;
class Documents;
class FileCommands;
class OpenRequests;
class QSplitter;
class QueryCommands;
class QuitQuestion;
class RestoredTabs;
class StatusLine;
class TargetChooser;
class TreeCommands;
class WelcomePage;
class Workspace;

/// The program's window: connections and their trees at the side, query tabs, a status line. It
/// speaks to nobody before it has been painted. [main]
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Opens what the command line names, connections as URIs or key/value strings, and files: now,
    /// or else once the window has been painted.
    void openArguments(const QStringList &arguments);
    /// Shows the tree of details and a query tab for it.
    void openConnection(const std::shared_ptr<DabroDBC> &details);

    ActionSet &actions() { return m_actions; }
    Documents &documents() const { return *m_documents; }
    Connections &connections() const { return *m_connections; }
    DXDatabaseTreeView &tree() const { return *m_tree; }
    StatusLine &status() const { return *m_status; }
    /// What failed outside of any tab.
    DXFailureList &failures() const;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void createMenus();
    void fillEditMenu(QMenu &menu);
    void createToolBar();
    void createCentre();
    void connectActions();
    void connectDocuments();
    void connectView();
    void start();
    void started();
    void updateCentre();
    void newTab();
    void showCommands();
    void showObjects();
    void restore();

    ActionSet m_actions;
    Connections *const m_connections;
    Documents *const m_documents;
    StatusLine *const m_status;
    WelcomePage *const m_welcome;
    Workspace *const m_workspace;
    const std::unique_ptr<TreeCommands> m_treeCommands;
    DXDatabaseTreeView *const m_tree;
    QueryCommands *const m_queryCommands;
    ConnectionDialogs *const m_dialogs;
    Disconnection *const m_disconnection;
    DXSavedConnectionsView *const m_saved;
    OpenRequests *const m_openRequests;
    FileCommands *const m_files;
    DocumentJournal *const m_journal;
    RestoredTabs *const m_restored;
    QuitQuestion *const m_quitQuestion;
    TargetChooser *m_target = nullptr;
    QWidget *m_sidebar = nullptr;
    QSplitter *m_splitter = nullptr;
    Appearance *m_appearance = nullptr;
    bool m_isStarting = false;
};
