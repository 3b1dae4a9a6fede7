// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/tree/CatalogueTree.h"

#include "cli/tree/CliTreeText.h"
#include "support/DXWait.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

CatalogueTree::CatalogueTree(const ServerAccess::Record &details)
{
    m_root->setDatabaseConnectionDetails(details);
    m_root->setDelegate(m_loader);
}

void CatalogueTree::load(const Entry &entry, int depth)
{
    bool isDone = false;
    m_loader->load(entry, depth, [&isDone] { isDone = true; });
    if (!DXWait::until([&isDone] { return isDone; }))
        qFatal("The tree did not load");
}

void CatalogueTree::reload(const Entry &entry)
{
    entry->loadEntriesAsync(DXDatabaseTreeEntry::Reload::Force);
    EXPECT_TRUE(DXWait::until([&entry] { return !entry->isLoadingAsync(); }));
}

CatalogueTree::Entry CatalogueTree::node(const QStringList &names)
{
    Entry entry = m_root;
    for (const QString &name : names) {
        load(entry);
        const auto children = entry->childEntries();
        const auto all = children ? *children : DXDatabaseTreeEntry::List();
        const auto child = std::find_if(all.begin(), all.end(), [&name](const auto &each) {
            return each->displayName() == name;
        });
        if (child == all.end()) {
            ADD_FAILURE() << "no " << name.toStdString() << " among "
                          << namesBelow(entry).join(u", ").toStdString();
            return m_root;
        }
        entry = *child;
    }
    return entry;
}

void CatalogueTree::awaitSearch()
{
    bool isUpdated = false;
    m_loader->setSearchUpdated([&isUpdated] { isUpdated = true; });
    reload(m_root);
    EXPECT_TRUE(DXWait::until([&isUpdated] { return isUpdated; }));
}

QStringList CatalogueTree::namesBelow(const Entry &entry)
{
    QStringList names;
    if (const auto children = entry->childEntries()) {
        for (const auto &child : *children)
            names.append(child->displayName());
    }
    return names;
}

QString CatalogueTree::text(const Entry &entry)
{
    return CliTreeText::text(*entry, {.depth = std::numeric_limits<int>::max(), .hasKinds = true});
}
