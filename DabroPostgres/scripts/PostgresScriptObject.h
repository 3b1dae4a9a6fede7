// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// An object that the user named in words: up to three names joined by dots, and the argument types
/// of a function behind them in parentheses.
struct PostgresScriptObject
{
    /// Which names there are. Only a schema may be left out.
    enum class Form { Name, SchemaAndName, SchemaNameAndMember };

    /// Null when it was left out.
    QString schema;
    QString name;
    /// The column or trigger of a table.
    QString member;
    /// What the parentheses hold; null without any.
    QString arguments;

    /// Nothing for a text that does not have the form. Names are taken as they are, not folded to
    /// lower case; those in double quotes may hold dots, parentheses and doubled quotes. [any]
    static std::optional<PostgresScriptObject> parse(const QString &text, Form form);
};
