// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnectionList.h"
#include "client/secrets/DXSecretStore.h"
#include "support/DXWait.h"

#include <memory>
#include <utility>
#include <vector>

/// Stores and lists of saved connections for tests. As in the program they live until it ends,
/// since what they were asked for may still come. The desktop's own secret service is out of reach,
/// so that everything is kept in a sealed file. [main]
namespace SavedConnections
{

template<typename Kind, typename... Arguments>
Kind &keptUntilTheEnd(Arguments &&...arguments)
{
    static std::vector<std::unique_ptr<Kind>> all;
    all.push_back(std::make_unique<Kind>(std::forward<Arguments>(arguments)...));
    return *all.back();
}

/// A store whose files lie in folder.
inline DXSecretStore &storeIn(const QString &folder)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    return keptUntilTheEnd<DXSecretStore>(folder);
}

/// A list of records of this kind under key in store.
template<typename Record>
SQLRecentConnectionList &listOf(const QString &key, DXSecretStore &store)
{
    return keptUntilTheEnd<SQLRecentConnectionList>(SQLRecentConnectionList::Init{
        .key = key, .createRecord = [] { return std::make_shared<Record>(); }, .store = store});
}

/// Waits until everything that lists of key were told is stored in folder. A test that removes the
/// folder sooner finds it made again.
inline bool areStored(const QString &folder, const QString &key)
{
    const DXSealedFile file(folder);
    return DXWait::until(
        [&] { return file.read(key + QStringLiteral(".pending"), nullptr).isNull(); });
}

} // namespace SavedConnections
