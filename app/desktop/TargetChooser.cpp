// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TargetChooser.h"

#include "client/DabroDBC.h"
#include "client/SQLRecentConnection.h"
#include "client/SQLRecentConnectionList.h"
#include "desktop/Connections.h"
#include "tree/DatabaseTreeEntryServerRoot.h"
#include "ui/DXToolTip.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace
{

QToolButton *createButton(const QString &name)
{
    auto *const button = new QToolButton;
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setMenu(new QMenu(button));
    return button;
}

constexpr int longestTitle = 32;

// What stands on a button or in a menu is a name, not a mnemonic.
QString plain(const QString &name)
{
    return QString(name).replace(u'&', QStringLiteral("&&"));
}

} // namespace

TargetChooser::TargetChooser(const Connections &connections, QWidget *parent)
    : QWidget(parent)
    , m_connections(connections)
    , m_connection(createButton(tr("Connection")))
    , m_database(createButton(tr("Database")))
{
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 4, 0);
    layout->setSpacing(4);
    layout->addWidget(m_connection);
    layout->addWidget(m_database);
    connect(m_connection->menu(), &QMenu::aboutToShow, this, &TargetChooser::fillConnections);
    connect(m_database->menu(), &QMenu::aboutToShow, this, &TargetChooser::fillDatabases);
    connect(&connections, &Connections::changed, this, &TargetChooser::update);
    update();
}

void TargetChooser::follow(DXQueryTab *tab)
{
    m_tab = tab;
    update();
}

void TargetChooser::update()
{
    const QString title = m_tab && m_tab->hasConnection() ? Connections::title(*m_tab->details())
                                                          : tr("No connection");
    const int widest = longestTitle * m_connection->fontMetrics().averageCharWidth();
    m_connection->setText(
        plain(m_connection->fontMetrics().elidedText(title, Qt::ElideMiddle, widest)));
    m_connection->setToolTip(DXToolTip::plain(title));
    m_connection->setAccessibleDescription(title);
    const QString database = m_tab ? m_tab->details()->database() : QString();
    m_database->setText(plain(database.isEmpty() ? tr("Default database") : database));
    m_database->setVisible(m_tab && m_tab->hasConnection());
}

void TargetChooser::fillConnections()
{
    QMenu &menu = *m_connection->menu();
    menu.clear();
    for (const Connections::Connection &connection : m_connections.open()) {
        QAction *const action = menu.addAction(plain(Connections::title(*connection.details)));
        action->setEnabled(m_tab != nullptr);
        connect(action, &QAction::triggered, this,
                [this, details = connection.details] { use(details->copy()); });
    }
    fillSaved(*menu.addMenu(tr("Saved connections")));
    menu.addSeparator();
    menu.addAction(tr("New connection…"), this, &TargetChooser::newConnectionRequested);
}

void TargetChooser::fillSaved(QMenu &menu)
{
    for (const SQLRecentConnectionList *const list : m_connections.savedConnections()) {
        for (const auto &record : list->recentConnections()) {
            const auto details = record->createDatabaseConnectionDetails();
            if (!m_connections.find(*details))
                connect(menu.addAction(plain(Connections::title(*details))), &QAction::triggered,
                        this, [this, record] { Q_EMIT connectionRequested(record); });
        }
    }
    menu.setEnabled(!menu.isEmpty());
}

void TargetChooser::fillDatabases()
{
    QMenu &menu = *m_database->menu();
    menu.clear();
    const Connections::Connection *const connection =
        m_tab && m_tab->hasConnection() ? m_connections.find(*m_tab->details()) : nullptr;
    if (!connection || !connection->root)
        return;
    for (const QString &name : connection->root->allDatabaseNames()) {
        QAction *const action = menu.addAction(plain(name));
        action->setCheckable(true);
        action->setChecked(name == m_tab->details()->database());
        connect(action, &QAction::triggered, this, [this, name, details = connection->details] {
            const auto other = details->copy();
            other->setDatabase(name);
            use(other);
        });
    }
    if (menu.isEmpty())
        menu.addAction(tr("The databases are not loaded yet"))->setEnabled(false);
}

void TargetChooser::use(const std::shared_ptr<DabroDBC> &details)
{
    if (!m_tab)
        return;
    if (m_tab->setDetails(details))
        Q_EMIT changed();
    else
        Q_EMIT refused(m_tab->session().isBusy()
                           ? tr("A statement is running. Cancel it first.")
                           : tr("A transaction is open. Commit it or roll it back first."));
    update();
}
