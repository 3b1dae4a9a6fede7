// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tree/CliTree.h"

#include "cli/CliConsole.h"
#include "cli/CliExitStatus.h"
#include "cli/tree/CliTreeLoader.h"
#include "client/DabroDBC.h"
#include "tree/DatabaseTreeEntryServerRoot.h"

#include <algorithm>

namespace
{

constexpr qsizetype mostNames = 20;

// The names of entry's children, for a message.
QString namesBelow(const DXDatabaseTreeEntry &entry)
{
    QStringList names;
    if (const auto children = entry.childEntries()) {
        for (const auto &child : *children)
            names.append(child->displayName());
    }
    if (names.size() > mostNames)
        names = names.first(mostNames) + QStringList(QStringLiteral("…"));
    return names.isEmpty() ? QStringLiteral("nothing") : names.join(QLatin1String(", "));
}

// Whether part of the tree could not be loaded.
bool holdsError(const DXDatabaseTreeEntry &entry)
{
    const auto children = entry.childEntries();
    return entry.imageName() == CliTreeText::errorImageName()
           || (children && std::any_of(children->begin(), children->end(), [](const auto &child) {
                   return holdsError(*child);
               }));
}

} // namespace

CliTree::CliTree(const Init &init)
    : m_init(init)
    , m_loader(std::make_shared<CliTreeLoader>())
{ }

CliTree::~CliTree() = default;

bool CliTree::makeRoot()
{
    m_root = m_init.details->createRootDatabaseTreeNode();
    if (!m_root) {
        fail(CliExitUsage, QStringLiteral("The driver shows no catalogue tree."));
        return false;
    }
    m_root->setDatabaseConnectionDetails(m_init.details);
    m_root->setDelegate(m_loader);
    return true;
}

void CliTree::printTree(const QStringList &path)
{
    if (makeRoot())
        follow(m_root, path);
}

void CliTree::follow(const std::shared_ptr<DXDatabaseTreeEntry> &entry, QStringList path)
{
    if (path.isEmpty()) {
        m_loader->load(entry, m_init.options.depth,
                       [self = shared_from_this(), entry] { self->print(*entry); });
        return;
    }
    const QString name = path.takeFirst();
    m_loader->load(entry, 1, [self = shared_from_this(), entry, name, path] {
        const auto children = entry->childEntries();
        const auto all = children ? *children : DXDatabaseTreeEntry::List();
        const auto child = std::find_if(all.begin(), all.end(), [&name](const auto &each) {
            return each->displayName() == name;
        });
        if (child != all.end())
            self->follow(*child, path);
        else
            self->fail(CliExitUsage,
                       QStringLiteral("There is no \"%1\" below \"%2\", which holds: %3")
                           .arg(name, entry->displayName(), namesBelow(*entry)));
    });
}

void CliTree::print(DXDatabaseTreeEntry &entry)
{
    m_init.console.output().write(CliTreeText::text(entry, m_init.options).toUtf8());
    m_init.done(holdsError(entry) ? CliExitStatementFailed : CliExitOk);
}

void CliTree::printSearch(const QString &text)
{
    if (!makeRoot())
        return;
    m_loader->setSearchUpdated([self = shared_from_this(), text] { self->found(text); });
    m_loader->load(m_root, 1, [] {});
}

void CliTree::found(const QString &text)
{
    if (holdsError(*m_root)) {
        print(*m_root);
    } else if (const auto copy = m_root->copyWithSearchResults(text)) {
        print(*copy);
    } else {
        m_init.console.note(QStringLiteral("Nothing is called like \"%1\".").arg(text));
        m_init.done(CliExitOk);
    }
}

void CliTree::fail(int status, const QString &text)
{
    m_init.console.error(text);
    m_init.done(status);
}
