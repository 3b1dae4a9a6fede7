// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "editing/DXDatabaseAutocompleteEntry.h"

#include <functional>
#include <memory>

class CliConsole;
class DXAutocompleteHelper;
class DabroDBC;

/// Prints the names that an editor would complete. [main]
class CliCompletion final
{
public:
    struct Init
    {
        CliConsole &console;
        /// Names a database.
        std::shared_ptr<const DabroDBC> details;
        /// The beginning of a name, or a schema or table, a dot and the beginning of a name in it.
        QString prefix;
        /// Called once, at the end, with the exit status.
        std::function<void(int status)> done;
    };
    explicit CliCompletion(const Init &init);
    ~CliCompletion();

    void start();

private:
    Q_DISABLE_COPY_MOVE(CliCompletion)

    void loaded();
    void print(const DXDatabaseAutocompleteEntry::List &entries, const QString &prefix);

    const Init m_init;
    const std::shared_ptr<DXAutocompleteHelper> m_helper;
    std::shared_ptr<void> m_updates;
};
