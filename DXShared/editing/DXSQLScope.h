// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/DXSQLWords.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// What the statement around a caret says about names: its tables with their aliases, its common
/// table expressions, its subqueries and the columns that each of them gives. Unfinished statements
/// are read as far as they make sense. [any]
class DXSQLScope final
{
public:
    struct Column
    {
        QString name;
        /// Its type, where that is known.
        QString details;
    };
    /// A source of columns.
    struct Relation
    {
        /// What it is called in the statement: its alias, or else its name.
        QString name;
        bool isAlias = false;
        /// The name as it was written, in parts; empty for a subquery.
        QStringList path;
        QList<Column> columns;
    };
    /// The columns of a table in the catalogue, by the parts of its name.
    using ColumnsOf = std::function<QList<Column>(const QStringList &path)>;

    /// Keeps words by reference.
    DXSQLScope(const DXSQLWords &words, const ColumnsOf &columnsOf);

    /// What can be used at the caret, a list for each query around it, the innermost first.
    const QList<QList<Relation>> &levels() const { return m_levels; }
    /// The names of the common table expressions at the caret.
    const QList<Relation> &commonTables() const { return m_commonTables; }
    /// The table that INSERT, UPDATE or DELETE changes; without a name where there is none.
    const Relation &target() const { return m_target; }
    /// What the select list before the caret calls its columns, for ORDER BY and GROUP BY.
    const QList<Column> &outputs() const { return m_outputs; }
    /// The relation that is called name, innermost first; null when there is none.
    const Relation *relationCalled(const QString &name) const;

    /// Whether a word can begin a query in parentheses.
    static bool beginsQuery(const DXSQLWord &word);

private:
    struct Range
    {
        qsizetype begin = 0;
        qsizetype end = 0;
    };
    using Relations = QList<Relation>;

    const DXSQLWord &at(qsizetype index) const;
    qsizetype skip(qsizetype index) const;
    Range inside(qsizetype bracket, qsizetype end) const;
    Range coreAround(const Range &query, qsizetype index) const;

    void readLevel(Range query, qsizetype caret);
    bool isInSelectOfInsert(const Range &core, qsizetype caret) const;
    Relations readCommonTables(Range &query, Relations known, int depth);
    Relations readSources(const Range &core, const Relations &known, int depth);
    qsizetype readTarget(qsizetype index, const Range &core, Relations &sources) const;
    bool namesTable(qsizetype index, qsizetype begin) const;
    qsizetype readFrom(qsizetype index, const Range &core, const Relations &known, int depth,
                       Relations &sources);
    qsizetype readItem(qsizetype index, const Range &core, const Relations &known, int depth,
                       Relations &sources);
    qsizetype readAlias(qsizetype index, qsizetype end, Relation &relation) const;
    QStringList readPath(qsizetype &index, qsizetype end) const;
    QStringList readNames(const Range &list) const;
    Relation resolve(const QStringList &path, const Relations &known) const;
    static void rename(QList<Column> &columns, const QStringList &names);

    // What a query calls its columns.
    QList<Column> outputsOf(Range query, const Relations &known, int depth);
    QList<Column> outputsOfCore(const Range &core, const Relations &known, int depth);
    QList<Column> outputsOfValues(const Range &core) const;
    Range selectList(const Range &core) const;
    QList<Column> columnsOfItem(const Range &item, const Relations &sources) const;
    Column columnCalled(const Range &path, const Relations &sources) const;
    QString nameOfItem(Range item) const;
    bool isPath(const Range &item) const;

    const QList<DXSQLWord> &m_words;
    const ColumnsOf m_columnsOf;
    QList<Relations> m_levels;
    Relations m_commonTables;
    Relation m_target;
    QList<Column> m_outputs;
};
