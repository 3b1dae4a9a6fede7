// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXTextRange.h"
#include "editing/DXCompletionWords.h"
#include "query/SQLMetadataTokenizerOptions.h"

#include <QList>
#include <QString>

#include <memory>

class DXCompletionCache;
class DabroDBC;
class DabroDatabaseClient;

/// Tells what may be written at a caret in SQL: the tables, aliases and columns that make sense
/// there, functions and key words. Answers from what the driver has published about the database
/// and from the statement itself; it never asks the server. [main]
class DXSHARED_EXPORT DXSQLCompletion final
{
public:
    enum class Kind { Column, Alias, CommonTable, Table, Schema, Function, Keyword };
    struct Candidate
    {
        Kind kind = Kind::Keyword;
        /// As it is shown.
        QString name;
        /// As it is written, quoted where the driver quotes it, and with its schema or alias where
        /// it is not found without.
        QString text;
        /// Where it is from: a table, a schema; may be empty.
        QString parent;
        /// A column's type; may be empty.
        QString details;
    };
    struct Answer
    {
        /// What is typed of the name, without a quote before it.
        QString typed;
        /// What a candidate's text takes the place of.
        DXTextRange replaced;
        /// Whether a dot stands before the name.
        bool isQualified = false;
        /// The likeliest first, at most maximum.
        QList<Candidate> candidates;
    };
    static constexpr qsizetype maximum = 200;

    explicit DXSQLCompletion(const std::shared_ptr<const DabroDBC> &details);
    ~DXSQLCompletion();

    /// Asks the driver to load the names unless it has them; once, when an editor is opened.
    void load();
    /// What may stand at a caret before the character at `caret`; nothing in strings, comments and
    /// numbers, and where a new name is made up. Needs no more of the text than the statement.
    Answer complete(const QString &text, qsizetype caret) const;

private:
    class Collector;

    QString quoted(const QString &name) const;

    const SQLMetadataTokenizerOptions m_options;
    const std::unique_ptr<DabroDatabaseClient> m_client;
    const std::shared_ptr<DXCompletionCache> m_cache;
    const DXCompletionWords m_keyWords;
};
