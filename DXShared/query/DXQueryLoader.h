// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

#include <functional>
#include <memory>

class DXQueryLoader;
class DabroDBC;

/// Who receives the text that a query loader made.
class DXSHARED_EXPORT DXQueryLoaderDelegate
{
public:
    virtual ~DXQueryLoaderDelegate();

    /// The loader's text, or what it has to say about its failure, as a comment of SQL. Called on
    /// whichever thread made it. The selector is `queryLoader:loadedQuery:`. [any]
    virtual void queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query) = 0;
};

/// Makes the text of one query or script, which nobody runs by making it. Owned by shared pointers:
/// a load under way keeps its loader alive.
class DXSHARED_EXPORT DXQueryLoader : public std::enable_shared_from_this<DXQueryLoader>
{
public:
    virtual ~DXQueryLoader();

    /// Held weakly: a text for a delegate that is gone is dropped. Set before loading. [main]
    std::weak_ptr<DXQueryLoaderDelegate> delegate() const { return m_delegate; }
    void setDelegate(const std::weak_ptr<DXQueryLoaderDelegate> &delegate)
    {
        m_delegate = delegate;
    }

    /// Starts making the text with the server that details describe, and returns at once, or after
    /// delivering where nothing has to be asked of the server. Each call delivers exactly once, on
    /// failure too. [any]
    virtual void beginLoadingQuery(const DabroDBC &details) = 0;

protected:
    DXQueryLoader();

    /// Hands query to the delegate, on this thread. [any]
    void deliver(const QString &query);
    /// Makes the text on the background queue and delivers it there. Once the program is shutting
    /// down, nothing is made and nothing delivered. [any]
    void deliverFromBackground(std::function<QString()> makeQuery);

private:
    Q_DISABLE_COPY_MOVE(DXQueryLoader)

    std::weak_ptr<DXQueryLoaderDelegate> m_delegate;
};
