// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/DXQueryLoader.h"

/// The base of all loaders of scripts. A script is text for the user, with CR LF and tabs; making
/// it changes nothing on the server unless a loader says so. A loader is made with the names of its
/// object, as the catalogue has them, and keeps nothing between loads.
class PostgresScriptQueryLoader : public DXQueryLoader
{
public:
    /// Delivers the script, or a comment of SQL that tells why there is none.
    void beginLoadingQuery(const DabroDBC &details) final;

protected:
    enum class Delivery {
        /// On the calling thread, before beginLoadingQuery() returns.
        AtOnce,
        /// On a thread of the background queue.
        FromBackground
    };
    explicit PostgresScriptQueryLoader(Delivery delivery = Delivery::FromBackground);

    /// The script, made on the thread that it is delivered on.
    virtual QString script(const DabroDBC &details) const = 0;

private:
    const Delivery m_delivery;
};
