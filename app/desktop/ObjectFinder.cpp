// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ObjectFinder.h"

#include "dispatch/DXDispatch.h"
#include "ui/DXIcon.h"

namespace
{

constexpr qsizetype mostHits = 200;

struct Hit
{
    std::shared_ptr<DXDatabaseTreeEntry> entry;
    // The tree that keeps the entry's parents.
    std::shared_ptr<DXDatabaseTreeEntry> root;
    QString path;
};

void collect(const std::shared_ptr<DXDatabaseTreeEntry> &entry,
             const std::shared_ptr<DXDatabaseTreeEntry> &root, const QString &path,
             QList<Hit> &hits)
{
    const auto children = entry->childEntries();
    if (!children || children->isEmpty()) {
        hits.append({entry, root, path});
        return;
    }
    const QString below =
        path.isEmpty() ? entry->displayName() : path + QStringLiteral(" › ") + entry->displayName();
    for (const auto &child : *children) {
        if (hits.size() == mostHits)
            return;
        collect(child, root, below, hits);
    }
}

QList<Hit> find(const DXDatabaseTreeEntry::List &roots, const QString &text)
{
    QList<Hit> hits;
    for (const auto &root : roots) {
        if (const auto copy = root->copyWithSearchResults(text))
            collect(copy, copy, QString(), hits);
    }
    return hits;
}

} // namespace

Chooser::Source ObjectFinder::source(const DXDatabaseTreeEntry::List &roots,
                                     const QPalette &palette)
{
    return [roots, palette](const QString &text, const Chooser::Answer &answer) {
        if (text.isEmpty()) {
            answer({});
            return;
        }
        DXDispatch::background([roots, palette, text, answer] {
            const QList<Hit> hits = find(roots, text);
            DXDispatch::main([hits, palette, answer] {
                QList<Chooser::Choice> choices;
                for (const Hit &hit : hits)
                    choices.append({.title = hit.entry->displayName(),
                                    .details = hit.path,
                                    .icon = DXIcon::named(hit.entry->imageName(), palette),
                                    .chosen = [hit] { hit.entry->onDoubleClicked(); }});
                answer(choices);
            });
        });
    };
}
