// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/TreeKeys.h"

#include "desktop/ActionSet.h"
#include "desktop/StatusLine.h"
#include "tree/DXDatabaseTreeContextHelper.h"
#include "tree/DXDatabaseTreeEntry.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QAction>
#include <QCoreApplication>
#include <QLineEdit>

void TreeKeys::connect(const ActionSet &actions, DXDatabaseTreeView &tree, StatusLine &status)
{
    using Id = ActionSet::Id;
    actions.connect(Id::SearchTree, [sidebar = actions[Id::Sidebar], &tree] {
        sidebar->setChecked(true);
        tree.findChild<QLineEdit *>()->setFocus(Qt::ShortcutFocusReason);
    });
    actions.connect(Id::Refresh, [&tree] { tree.refresh(); });
    actions.connect(Id::NewStoredProcedure, [&tree, &status] {
        const auto entry = tree.currentlySelectedDatabaseTreeEntry();
        const auto helper = entry ? entry->contextHelper() : nullptr;
        if (helper)
            helper->newStoredProcedure();
        else
            status.announce(QCoreApplication::translate(
                "TreeKeys", "Select a database in the tree first: the procedure is made there."));
    });
}
