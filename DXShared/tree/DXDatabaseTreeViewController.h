// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QString>

#include <memory>

class DXDatabaseTreeEntry;
class DXQueryLoader;
class DabroDBC;
class QWidget;

/// What the window around a catalogue tree does for it. All [main].
class DXSHARED_EXPORT DXDatabaseTreeViewControllerDelegate
{
public:
    virtual ~DXDatabaseTreeViewControllerDelegate();

    /// The window that the sheets of the tree's actions belong to.
    virtual QWidget *targetWindow() = 0;

    /// What happens to a query once it stands in its tab.
    enum class QueryTab { Open, OpenAndExecute };
    virtual void addNewQueryTab(const QString &query, const std::shared_ptr<DabroDBC> &details,
                                QueryTab mode) = 0;
    /// The selector is
    /// `databaseTreeViewController:addNewQueryTabWithLoader:connectionDetails:executeOnQueryLoaded:`.
    virtual void addNewQueryTabWithLoader(const std::shared_ptr<DXQueryLoader> &loader,
                                          const std::shared_ptr<DabroDBC> &details,
                                          QueryTab mode) = 0;

    /// Where else a script can go.
    enum class ScriptDestination { Clipboard, File };
    virtual void sendScript(const std::shared_ptr<DXQueryLoader> &loader,
                            const std::shared_ptr<DabroDBC> &details,
                            ScriptDestination destination) = 0;

    /// Opens the table designer. The selector is
    /// `databaseTreeViewController:alterTableNamed:inSchema:connectionDetails:`.
    virtual void alterTableNamed(const QString &tableName, const QString &schema,
                                 const std::shared_ptr<DabroDBC> &details) = 0;
    virtual void openConnectionDialog(const std::shared_ptr<DabroDBC> &details) = 0;
    /// Closes the connection's tree and tabs.
    virtual void disconnectFrom(const std::shared_ptr<DabroDBC> &details) = 0;
    /// Opens the import of a file into a table of the connection's database.
    virtual void importInto(const std::shared_ptr<DabroDBC> &details) = 0;
    /// Asks for a file and writes the table's rows into it; tablePath is quoted already.
    virtual void exportTableAsCSV(const QString &tablePath,
                                  const std::shared_ptr<DabroDBC> &details) = 0;
    /// The desktop's sound for a key that does nothing here.
    virtual void beep() = 0;
};

/// The view that shows a catalogue tree, as the actions on its nodes see it. All [main].
class DXSHARED_EXPORT DXDatabaseTreeViewController
{
public:
    virtual ~DXDatabaseTreeViewController();

    /// Nothing when no node is selected.
    virtual std::shared_ptr<DXDatabaseTreeEntry> currentlySelectedDatabaseTreeEntry() const = 0;
    /// The roots of all trees, those of a search that is shown in their place among them.
    virtual QList<std::shared_ptr<DXDatabaseTreeEntry>> allRoots() const = 0;
    virtual void deselectAll() = 0;
    /// Shows anew what the nodes hold; loads nothing.
    virtual void reloadData() = 0;
    /// Loads the children of entry again, or of what holds it when it has none.
    virtual void doRefreshDatabaseTreeEntry(const std::shared_ptr<DXDatabaseTreeEntry> &entry) = 0;
    /// Outlives this view.
    virtual DXDatabaseTreeViewControllerDelegate &delegate() = 0;
};
