// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <memory>

class DXAutocompleteHelper;
class DXCompletionNames;
class DabroDBC;

/// Keeps the names of one connection ready for completion: prepares them in the background each
/// time its driver says that there are new ones. [main]
class DXSHARED_EXPORT DXCompletionCache final
{
public:
    /// The cache of the connection that details describe, one for all of its editors; it lives as
    /// long as somebody holds it.
    static std::shared_ptr<DXCompletionCache> of(const std::shared_ptr<const DabroDBC> &details);
    ~DXCompletionCache();

    /// Asks the driver to load the names, unless it has them: when an editor is opened on a
    /// connection, or after the database has changed.
    void load(bool isForced = false);
    /// What is ready; nothing before the first names are.
    std::shared_ptr<const DXCompletionNames> names() const;

private:
    struct State;

    explicit DXCompletionCache(const std::shared_ptr<const DabroDBC> &details);
    Q_DISABLE_COPY_MOVE(DXCompletionCache)

    const std::shared_ptr<State> d;
    // Ends before what it changes.
    std::shared_ptr<void> m_updates;
};
