// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <memory>

/// A name that an editor can complete. Shared between threads once it is published; nobody changes
/// it then.
struct DXDatabaseAutocompleteEntry
{
    using List = QList<std::shared_ptr<const DXDatabaseAutocompleteEntry>>;
    /// The numbers are bits, so that a set of types is their sum.
    enum class CompletionType { Schema = 2, Table = 4, Column = 8 };

    QString entryName;
    CompletionType entryCompletionType = CompletionType::Schema;
    /// The tables of a schema, the columns of a table.
    List entryChildren;
    /// Gone when nobody holds the list that it was loaded with.
    std::weak_ptr<const DXDatabaseAutocompleteEntry> entryParent;
    /// Where the name is from, for the user.
    QString entryParentDisplay;
    /// What else the user may want to know: the type of a column.
    QString entryDetails;
};
