// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/DXQueryLoader.h"

#include <functional>

/// Waits for one script and hands it over on the main thread; keeps itself alive until then.
class ScriptReceiver final : public DXQueryLoaderDelegate
{
public:
    using Received = std::function<void(const QString &script)>;

    /// Makes the loader's script and gives it to received. [main]
    static void load(const std::shared_ptr<DXQueryLoader> &loader, const DabroDBC &details,
                     const Received &received);

    void queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query) override;

private:
    explicit ScriptReceiver(const Received &received)
        : m_received(received)
    { }

    const Received m_received;
    std::shared_ptr<ScriptReceiver> m_self;
};
