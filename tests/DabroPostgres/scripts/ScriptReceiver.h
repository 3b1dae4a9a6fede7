// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DabroPostgres/scripts/ScriptFile.h"
#include "query/DXQueryLoader.h"

#include <future>
#include <thread>

class DabroDBC;

/// Takes what a loader delivers. [any]
class ScriptReceiver final : public DXQueryLoaderDelegate
{
public:
    struct Delivery
    {
        QString script;
        /// Whether on the thread that asked, which means before beginLoadingQuery() returned.
        bool wasAtOnce = false;
    };

    /// The script, or the refusal to make one. [background]
    static QString script(const ScriptFile::Script &of, const DabroDBC &details);
    /// Begins loading and waits for the delivery; a second one ends the program. [background]
    static Delivery load(DXQueryLoader &loader, const DabroDBC &details);

    void queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query) override;

private:
    const std::thread::id m_asking = std::this_thread::get_id();
    std::promise<Delivery> m_delivered;
};
