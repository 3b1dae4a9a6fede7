// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// A catalogue tree written as lines, as far as it is loaded: each node's name, indented by two
/// blanks a level, and its details behind two blanks. Characters that do not print are escaped.
/// [main]
class CliTreeText final
{
public:
    struct Options
    {
        /// How many levels below the first node are written.
        int depth = 0;
        /// Whether each node's menu follows it, an item a line behind "> ".
        bool hasMenus = false;
        /// Whether each node's kind, the end of its image's name, stands in brackets.
        bool hasKinds = false;
    };
    static QString text(DXDatabaseTreeEntry &entry, const Options &options);
    /// The name of the image of nodes that stand for a failed load.
    static QString errorImageName();

private:
    explicit CliTreeText(const Options &options);

    void write(DXDatabaseTreeEntry &entry, int level);
    void writeMenu(const std::vector<DXMenu::Item> &items, int level);
    void writeLine(const QString &line, int level);

    const Options m_options;
    QString m_text;
};
