// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "query/DXQueryLoader.h"
#include "query/DXScriptCatalogue.h"

#include <QList>

#include <functional>
#include <memory>
#include <mutex>

class CliConsole;
class DabroDBC;

/// Prints the scripts of an object, one after the other. Owned by a shared pointer. [main]
class CliScripts final : public DXQueryLoaderDelegate,
                         public std::enable_shared_from_this<CliScripts>
{
public:
    struct Init
    {
        CliConsole &console;
        std::shared_ptr<const DabroDBC> details;
        /// Without a script: all of the object's kind, each under a comment with its name.
        DXScriptCatalogue::Request request;
        /// Called once, at the end, with the exit status.
        std::function<void(int status)> done;
    };
    explicit CliScripts(const Init &init);

    void start();

    /// [any]
    void queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query) override;

private:
    struct Made
    {
        QList<std::shared_ptr<DXQueryLoader>> loaders;
        DXError error;
    };

    QStringList scriptNames(const DXScriptCatalogue &catalogue);
    void makeLoaders(const std::shared_ptr<DXScriptCatalogue> &catalogue, const QStringList &names);
    /// [background]
    Made made(const DXScriptCatalogue &catalogue, const QStringList &names) const;
    void loadersMade(const Made &made);
    void loadNext();
    void print(const QString &script);
    void fail(int status, const QString &text);

    const Init m_init;
    QStringList m_names;
    QList<std::shared_ptr<DXQueryLoader>> m_loaders;
    // How many are printed.
    qsizetype m_printed = 0;
    // Guards the failure that was logged last.
    std::mutex m_mutex;
    DXError m_failure;
    std::shared_ptr<void> m_failures;
};
