// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/tree/CliTreeText.h"

#include <QStringList>

#include <functional>
#include <memory>

class CliConsole;
class CliTreeLoader;
class DabroDBC;

/// Prints the catalogue tree of a connection, or what a search of it finds. Owned by a shared
/// pointer. [main]
class CliTree final : public std::enable_shared_from_this<CliTree>
{
public:
    struct Init
    {
        CliConsole &console;
        std::shared_ptr<DabroDBC> details;
        CliTreeText::Options options;
        /// Called once, at the end, with the exit status.
        std::function<void(int status)> done;
    };
    explicit CliTree(const Init &init);
    ~CliTree();

    /// Prints the node that path leads to, by the names of nodes below the root, and what is below
    /// it.
    void printTree(const QStringList &path);
    /// Prints the databases that hold something called like text, and what it is.
    void printSearch(const QString &text);

private:
    Q_DISABLE_COPY_MOVE(CliTree)

    bool makeRoot();
    void follow(const std::shared_ptr<DXDatabaseTreeEntry> &entry, QStringList path);
    void print(DXDatabaseTreeEntry &entry);
    void found(const QString &text);
    void fail(int status, const QString &text);

    const Init m_init;
    const std::shared_ptr<CliTreeLoader> m_loader;
    std::shared_ptr<DXDatabaseTreeEntry> m_root;
};
