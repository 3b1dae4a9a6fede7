// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The menu items that nodes of every driver share.
#include "tree/DXDatabaseTreeEntry.h"

#include "tree/DXDatabaseTreeContextHelper.h"

#include <QCoreApplication>

namespace
{

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DXDatabaseTreeEntry)
};

} // namespace

DXMenu DXDatabaseTreeEntry::menu()
{
    return DXMenu(QStringLiteral("Root"));
}

DXMenu::Action DXDatabaseTreeEntry::actionOnHelper(const HelperAction &action)
{
    return [self = weak_from_this(), action] {
        const auto entry = self.lock();
        if (const auto helper = entry ? entry->contextHelper() : nullptr)
            action(*helper, *entry);
    };
}

DXMenu::Item DXDatabaseTreeEntry::newQueryMenuItem()
{
    return {.title = Text::tr("New query"),
            .action =
                actionOnHelper([](auto &helper, const auto &entry) { helper.addQueryTab(entry); }),
            .submenu = {}};
}

DXMenu::Item DXDatabaseTreeEntry::disconnectMenuItem()
{
    return {.title = Text::tr("Disconnect"),
            .action =
                actionOnHelper([](auto &helper, const auto &entry) { helper.disconnect(entry); }),
            .submenu = {}};
}

DXMenu::Item DXDatabaseTreeEntry::refreshMenuItem()
{
    return {.title = Text::tr("Refresh"),
            .action = [self = std::const_pointer_cast<DXDatabaseTreeEntry>(
                           shared_from_this())] { self->loadEntriesAsync(Reload::Force); },
            .submenu = {}};
}

DXMenu::Item DXDatabaseTreeEntry::importMenuItem()
{
    DXMenu::Action action;
    if (const auto asked = contextHelper(); asked && asked->canImportInto(*this))
        action = actionOnHelper([](auto &helper, const auto &entry) { helper.importInto(entry); });
    return {.title = Text::tr("Import"), .action = action, .submenu = {}};
}

DXMenu
DXDatabaseTreeEntry::createScriptToOptionsMenu(const QString &title,
                                               const std::shared_ptr<DXQueryLoader> &queryLoader)
{
    using Destination = DXDatabaseTreeViewControllerDelegate::ScriptDestination;
    const auto sendTo = [&](Destination destination) {
        return actionOnHelper([=](auto &helper, const auto &entry) {
            helper.sendScript(entry, queryLoader, destination);
        });
    };
    DXMenu destinations(title);
    destinations.addItem(Text::tr("New query tab"),
                         actionOnHelper([=](auto &helper, const auto &entry) {
                             helper.addQueryTabWithQueryLoader(entry, queryLoader);
                         }));
    destinations.addItem(Text::tr("Clipboard"), sendTo(Destination::Clipboard));
    destinations.addItem(Text::tr("File…"), sendTo(Destination::File));
    return destinations;
}
