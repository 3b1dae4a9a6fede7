// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/DXSQLWords.h"

#include <QStringList>

/// What kind of thing is written at a caret. [any]
struct DXSQLClause
{
    enum class Kind {
        Start, ///< the first word of a statement
        Keywords, ///< where only a key word goes on, as behind a table and its alias
        NewName, ///< a name that does not exist yet: an alias
        Relation, ///< a table, or what stands for one
        Expression,
        TargetColumn, ///< of the table that the statement changes
        SharedColumn, ///< JOIN … USING (…)
    };
    Kind kind = Kind::Expression;
    /// The names before the caret that a dot parts from it and each other.
    QStringList qualifier;
    /// The names that stand in the list around the caret already.
    QStringList used;
    /// Whether what the select list calls its columns may be used.
    bool mayUseOutputs = false;

    static DXSQLClause at(const DXSQLWords &words);
};
