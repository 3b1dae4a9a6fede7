// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/MainWindow.h"

#include "client/DabroDBC.h"
#include "client/SQLRecentConnection.h"
#include "desktop/AboutBox.h"
#include "desktop/Appearance.h"
#include "desktop/ConnectionDialogs.h"
#include "desktop/Connections.h"
#include "desktop/Disconnection.h"
#include "desktop/ObjectFinder.h"
#include "desktop/QueryCommands.h"
#include "desktop/StatusLine.h"
#include "desktop/TargetChooser.h"
#include "desktop/TreeCommands.h"
#include "desktop/TreeKeys.h"
#include "desktop/WelcomePage.h"
#include "desktop/Workspace.h"
#include "desktop/documents/DocumentJournal.h"
#include "desktop/documents/Documents.h"
#include "desktop/documents/FileCommands.h"
#include "desktop/documents/OpenRequests.h"
#include "desktop/documents/QuitQuestion.h"
#include "desktop/documents/RestoredTabs.h"
#include "dispatch/DXDispatch.h"
#include "ui/DXFailureList.h"
#include "ui/connection/DXSSHPrompter.h"
#include "ui/connection/DXSavedConnectionsView.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryTab.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QPointer>
#include <QSettings>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <utility>

namespace
{

using Id = ActionSet::Id;

const QLatin1String geometryKey("window/geometry");
const QLatin1String splitterKey("window/sidebar");
constexpr int sidebarWidth = 260;

} // namespace

MainWindow::MainWindow()
    : m_actions(*this)
    , m_connections(new Connections(this))
    , m_documents(new Documents)
    , m_status(new StatusLine)
    , m_welcome(new WelcomePage)
    , m_workspace(new Workspace(m_welcome, m_documents))
    , m_treeCommands(std::make_unique<TreeCommands>(TreeCommands::Init{
          .connections = *m_connections,
          .documents = *m_documents,
          .exports = m_workspace->exports(),
          .status = *m_status,
          .failures = m_workspace->failures(),
          .editConnection =
              [this](const std::shared_ptr<DabroDBC> &details) { m_dialogs->edit(*details); },
          .disconnect =
              [this](const std::shared_ptr<DabroDBC> &details) {
                  m_disconnection->request(details);
              }}))
    , m_tree(new DXDatabaseTreeView(*m_treeCommands))
    , m_queryCommands(new QueryCommands(m_actions, this))
    , m_dialogs(new ConnectionDialogs(*m_connections, *this))
    , m_disconnection(new Disconnection(
          {.connections = *m_connections, .documents = *m_documents, .tree = *m_tree}, *this))
    , m_saved(new DXSavedConnectionsView)
    , m_openRequests(new OpenRequests({.connections = *m_connections,
                                       .documents = *m_documents,
                                       .failures = m_workspace->failures()},
                                      this))
    , m_files(new FileCommands(m_actions, *m_documents, *this))
    , m_journal(new DocumentJournal(*m_documents, this))
    , m_restored(new RestoredTabs(*m_connections, this))
    , m_quitQuestion(new QuitQuestion(
          {.documents = *m_documents, .exports = m_workspace->exports(), .journal = *m_journal},
          *this))
{
    setWindowTitle(QApplication::applicationDisplayName());
    setStatusBar(m_status);
    createToolBar();
    createMenus();
    createCentre();
    m_saved->setOffersNew(false);
    m_welcome->setList(m_saved);
    connectActions();
    connectDocuments();
    connectView();
    restore();
    updateCentre();
    // A window that opens minimised is not painted.
    QTimer::singleShot(std::chrono::seconds(1), this, &MainWindow::start);
}

MainWindow::~MainWindow()
{
    // Tabs and trees tell of their end; nobody is to hear it from a window that is half gone.
    disconnect(m_documents, nullptr, this, nullptr);
    disconnect(m_connections, nullptr, this, nullptr);
}

void MainWindow::createMenus()
{
    QMenu *const file = menuBar()->addMenu(tr("&File"));
    m_actions.fill(*file, {{Id::NewConnection, Id::Disconnect}, {Id::NewTab, Id::Open}});
    QMenu *const recent = file->addMenu(tr("Open &recent"));
    connect(recent, &QMenu::aboutToShow, this,
            [this, recent] { m_files->fillRecentFiles(*recent); });
    m_actions.fill(*file, {{Id::Save, Id::SaveAs}, {Id::CloseTab, Id::ReopenTab}, {Id::Quit}});
    QMenu *const edit = menuBar()->addMenu(tr("&Edit"));
    connect(edit, &QMenu::aboutToShow, this, [this, edit] { fillEditMenu(*edit); });
    fillEditMenu(*edit);
    m_actions.fill(*menuBar()->addMenu(tr("&Query")), {{Id::RunStatement, Id::RunAll, Id::Cancel},
                                                       {Id::Commit, Id::RollBack, Id::ManualCommit},
                                                       {Id::NewStoredProcedure},
                                                       {Id::NextResult, Id::PreviousResult},
                                                       {Id::CopyAs, Id::SaveCsv}});
    QMenu *const view = menuBar()->addMenu(tr("&View"));
    m_actions.fill(*view, {{Id::CommandPalette, Id::GoToObject, Id::SearchTree, Id::GoToEditor,
                            Id::GoToFailure},
                           {Id::Sidebar, Id::Refresh},
                           {Id::NextTab, Id::PreviousTab}});
    view->addSeparator();
    m_actions.fill(*view->addMenu(tr("&Appearance")),
                   {{Id::AppearanceSystem, Id::AppearanceLight, Id::AppearanceDark}});
    m_actions.fill(*menuBar()->addMenu(tr("&Help")), {{Id::About}});
}

// The editor's own commands belong to the editor that has the focus.
void MainWindow::fillEditMenu(QMenu &menu)
{
    menu.clear();
    m_actions.fill(menu, {{Id::Undo, Id::Redo}, {Id::Cut, Id::Copy, Id::Paste}});
    if (const DXQueryTab *const tab = m_documents->current()) {
        menu.addSeparator();
        menu.addActions(tab->editor().actions());
    }
}

void MainWindow::createToolBar()
{
    auto *const bar = new QToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("tools"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(16, 16));
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    m_target = new TargetChooser(*m_connections);
    bar->addWidget(m_target);
    for (const Id id : {Id::RunStatement, Id::RunAll, Id::Cancel})
        bar->addAction(m_actions[id]);
    bar->addSeparator();
    for (const Id id : {Id::Commit, Id::RollBack})
        bar->addAction(m_actions[id]);
    addToolBar(bar);
}

void MainWindow::createCentre()
{
    m_sidebar = new QWidget;
    m_sidebar->setObjectName(QStringLiteral("sidebar"));
    auto *const side = new QVBoxLayout(m_sidebar);
    side->setContentsMargins(0, 0, 0, 0);
    side->addWidget(m_tree);

    m_splitter = new QSplitter;
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(m_sidebar);
    m_splitter->addWidget(m_workspace);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({sidebarWidth, 1000});
    setCentralWidget(m_splitter);
}

void MainWindow::connectActions()
{
    m_actions.connect(Id::NewConnection, [this] { m_dialogs->create(); });
    m_actions.connect(Id::Disconnect, [this] {
        if (DXQueryTab *const tab = m_documents->current())
            m_disconnection->request(tab->details());
    });
    m_actions.connect(Id::NewTab, [this] { newTab(); });
    m_actions.connect(Id::CloseTab, [this] { m_documents->requestClose(m_documents->current()); });
    m_actions.connect(Id::ReopenTab, [this] { m_documents->reopen(); });
    m_actions.connect(Id::NextTab, [this] { m_documents->step(1); });
    m_actions.connect(Id::PreviousTab, [this] { m_documents->step(-1); });
    m_actions.connect(Id::Quit, [this] { close(); });
    connect(m_connections, &Connections::changed, this, &MainWindow::updateCentre);
    connect(m_target, &TargetChooser::newConnectionRequested, m_dialogs,
            &ConnectionDialogs::create);
    connect(m_target, &TargetChooser::connectionRequested, m_dialogs,
            &ConnectionDialogs::connectTo);
    connect(m_target, &TargetChooser::changed, this, &MainWindow::updateCentre);
    connect(m_target, &TargetChooser::refused, m_status, &StatusLine::announce);
    connect(m_welcome, &WelcomePage::newConnectionRequested, m_dialogs, &ConnectionDialogs::create);
    connect(m_saved, &DXSavedConnectionsView::newRequested, m_dialogs, &ConnectionDialogs::create);
    connect(m_saved, &DXSavedConnectionsView::connectRequested, m_dialogs,
            &ConnectionDialogs::connectTo);
    connect(m_saved, &DXSavedConnectionsView::editRequested, this, [this](const auto &record) {
        m_dialogs->edit(*record->createDatabaseConnectionDetails());
    });
    connect(m_dialogs, &ConnectionDialogs::connected, this, &MainWindow::openConnection);
    connect(m_dialogs, &ConnectionDialogs::announced, m_status, &StatusLine::announce);
    connect(m_journal, &DocumentJournal::restored, m_restored, &RestoredTabs::add);
    connect(m_restored, &RestoredTabs::reunited, this, [this] {
        m_target->follow(m_documents->current());
        updateCentre();
    });
    connect(m_documents, &Documents::currentTabChanged, this, [this](DXQueryTab *tab) {
        m_queryCommands->follow(tab);
        m_target->follow(tab);
        m_status->follow(tab, tab ? m_connections->product(*tab->details()) : QString());
        updateCentre();
    });
}

DXFailureList &MainWindow::failures() const
{
    return m_workspace->failures();
}

void MainWindow::connectDocuments()
{
    connect(m_files, &FileCommands::openRequested, m_openRequests, &OpenRequests::open);
    connect(m_openRequests, &OpenRequests::connectionRequested, this, &MainWindow::openConnection);
    connect(m_openRequests, &OpenRequests::dialogRequested, m_dialogs, &ConnectionDialogs::create);
    // A tab that came back with its text connects when something is run.
    connect(m_documents, &Documents::connected, this, [this](const DXQueryTab *tab) {
        if (!m_connections->find(*tab->details()))
            m_connections->open(tab->details()->copy(), *m_tree);
    });
    connect(m_documents, &Documents::titleChanged, this, &MainWindow::updateCentre);
    const auto showFailure = [this](const QString &about, const QString &headline,
                                    const QString &details) {
        failures().showFailure(about, headline, details);
    };
    connect(m_documents, &Documents::failed, this, showFailure);
    connect(m_dialogs, &ConnectionDialogs::failed, this, showFailure);
    connect(m_journal, &DocumentJournal::failed, this, showFailure);
    connect(m_journal, &DocumentJournal::settled, &failures(), &DXFailureList::settle);
}

void MainWindow::connectView()
{
    m_actions.connectToggle(Id::Sidebar, [this](bool isOn) { m_sidebar->setVisible(isOn); });
    TreeKeys::connect(m_actions, *m_tree, *m_status);
    m_actions.connect(Id::GoToFailure, [this] {
        const DXQueryTab *const tab = m_documents->current();
        DXFailureList &others = failures().isEmpty() ? m_tree->failures() : failures();
        DXFailureList &list = tab && !tab->failures().isEmpty() ? tab->failures() : others;
        list.focusNewest();
    });
    m_actions.connect(Id::CommandPalette, [this] { showCommands(); });
    m_actions.connect(Id::GoToObject, [this] { showObjects(); });
    m_actions.connect(Id::About, [this] { AboutBox::open(*this); });
}

void MainWindow::updateCentre()
{
    DXQueryTab *const tab = m_documents->current();
    m_workspace->show(tab ? Workspace::Shown::Tabs : Workspace::Shown::Welcome);
    m_actions[Id::Disconnect]->setEnabled(tab && m_connections->find(*tab->details()));
    m_actions[Id::ReopenTab]->setEnabled(m_documents->canReopen());
    m_workspace->setColor(tab && tab->hasConnection() ? Connections::color(*tab->details())
                                                      : QString());
    const QString title = tab ? m_documents->tabText(m_documents->currentIndex()) : QString();
    const QString dash = tab ? QStringLiteral(" – ") : QString();
    setWindowTitle(title + dash + QApplication::applicationDisplayName());
}

void MainWindow::openConnection(const std::shared_ptr<DabroDBC> &details)
{
    m_connections->open(details, *m_tree);
    m_documents->add(details->copy());
}

void MainWindow::openArguments(const QStringList &arguments)
{
    m_openRequests->open(arguments);
}

void MainWindow::newTab()
{
    const DXQueryTab *const tab = m_documents->current();
    auto details = tab && tab->hasConnection() ? tab->details() : nullptr;
    if (!details && !m_connections->open().isEmpty())
        details = m_connections->open().constFirst().details;
    m_documents->add(details ? details->copy() : nullptr);
}

void MainWindow::showCommands()
{
    QList<QAction *> commands = m_actions.all();
    if (const DXQueryTab *const tab = m_documents->current())
        commands += tab->editor().actions();
    Chooser::open(*this, tr("Type the name of a command"), Chooser::among(commands));
}

void MainWindow::showObjects()
{
    const Chooser *const chooser =
        Chooser::open(*this, tr("Type the name of a table, view, function…"),
                      ObjectFinder::source(m_tree->roots(), palette()));
    connect(m_tree, &DXDatabaseTreeView::searchResultsUpdated, chooser, &Chooser::searchAgain);
}

void MainWindow::restore()
{
    const QSettings settings;
    resize(1280, 800);
    restoreGeometry(settings.value(geometryKey).toByteArray());
    m_splitter->restoreState(settings.value(splitterKey).toByteArray());
    m_appearance = new Appearance(m_actions, this);
}

// Drivers are loaded and connections opened once there is a window to look at: what is posted while
// it paints comes after the flush.
bool MainWindow::event(QEvent *event)
{
    if (event->type() == QEvent::Paint)
        start();
    return QMainWindow::event(event);
}

void MainWindow::start()
{
    if (std::exchange(m_isStarting, true))
        return;
    DXDispatch::main([window = QPointer(this)] {
        if (window)
            window->started();
    });
}

void MainWindow::started()
{
    m_connections->loadDrivers();
    m_documents->setPlainDetails(m_connections->createDetails());
    if (!m_connections->hasDriver())
        failures().showFailure(
            QStringLiteral("driver"),
            tr("No driver could be loaded from %1.").arg(DXDriverLoader::searchPath().join(u", ")),
            m_connections->refusals());
    m_saved->setLists(m_connections->savedConnections());
    m_journal->open();
    DXError error;
    if (!DXSSHPrompter::install(&error))
        failures().showFailure(QStringLiteral("ssh"), tr("ssh cannot ask for passphrases."),
                               error.description());
    const QString demo = qEnvironmentVariable("DABRO_DEMO_URI");
    if (!demo.isEmpty()) {
        m_welcome->offerDemo();
        connect(m_welcome, &WelcomePage::demoRequested, this,
                [this, demo] { openArguments({demo}); });
    }
    m_appearance->followDesktop();
    m_openRequests->begin();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_quitQuestion->mayClose()) {
        event->ignore();
        return;
    }
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(splitterKey, m_splitter->saveState());
    QMainWindow::closeEvent(event);
}

void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && centralWidget()) {
        m_actions.updateIcons();
        updateCentre();
    }
}
