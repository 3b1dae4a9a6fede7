// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXSQLCompletion.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "editing/DXCompletionCache.h"
#include "editing/DXCompletionNames.h"
#include "editing/DXSQLClause.h"
#include "editing/DXSQLScope.h"

#include <QHash>

#include <algorithm>

namespace
{

using Clause = DXSQLClause::Kind;
using Column = DXSQLScope::Column;
using Relation = DXSQLScope::Relation;

bool isPlainName(const QString &name)
{
    const auto isPlain = [](QChar c) {
        return c.isLetterOrNumber() || c == u'_' || c == u'$' || c.unicode() > 127;
    };
    return !name.isEmpty() && !name.front().isDigit() && name.front() != u'$'
           && std::all_of(name.begin(), name.end(), isPlain);
}

QString inQuotes(QString name)
{
    return u'"' + name.replace(QLatin1String("\""), QLatin1String("\"\"")) + u'"';
}

SQLMetadataTokenizerOptions optionsOf(const DabroDBC &details)
{
    const auto options = details.createPreParserOptions();
    return options ? *options : SQLMetadataTokenizerOptions();
}

bool contains(const QStringList &names, const QString &name)
{
    return names.contains(name, Qt::CaseInsensitive);
}

} // namespace

// Gathers the candidates of one answer.
class DXSQLCompletion::Collector final
{
public:
    Collector(const DXSQLCompletion &completion, const DXSQLWords &words)
        : m_completion(completion)
        , m_words(words)
        , m_names(completion.m_cache->names())
        , m_clause(DXSQLClause::at(words))
        , m_scope(words, [this](const QStringList &path) { return columnsOf(path); })
    { }

    QList<Candidate> collect()
    {
        if (!m_clause.qualifier.isEmpty())
            collectQualified();
        else
            collectUnqualified();
        std::stable_sort(m_found.begin(), m_found.end(), [](const Found &left, const Found &right) {
            return left.rank < right.rank;
        });
        QList<Candidate> candidates;
        for (const Found &found : std::as_const(m_found)) {
            if (candidates.size() == maximum)
                break;
            candidates += found.candidate;
        }
        return candidates;
    }

    bool isQualified() const { return !m_clause.qualifier.isEmpty(); }

private:
    struct Found
    {
        int rank = 0;
        Candidate candidate;
    };

    QList<Column> columnsOf(const QStringList &path) const
    {
        QList<Column> columns;
        const auto *table = m_names ? m_names->tableCalled(path) : nullptr;
        if (!table)
            return columns;
        for (const auto &column : table->entryChildren)
            columns += {column->entryName, column->entryDetails};
        return columns;
    }

    QString written(const QString &name) const
    {
        return m_words.isQuoted ? inQuotes(name) : m_completion.quoted(name);
    }

    // Better matches come before better places.
    void add(DXNameIndex::Match match, int place, const Candidate &candidate)
    {
        m_found += {static_cast<int>(match) * 100 + place, candidate};
    }

    void addLocal(const QList<Candidate> &candidates, int place)
    {
        QStringList names;
        for (const Candidate &candidate : candidates)
            names += candidate.name;
        QList<DXNameIndex::Hit> hits = DXNameIndex(names).find(m_words.typed, maximum);
        // As the table has them.
        std::sort(hits.begin(), hits.end(),
                  [](const auto &left, const auto &right) { return left.index < right.index; });
        for (const auto &hit : hits)
            add(hit.match, place, candidates[hit.index]);
    }

    void addColumns(const QList<Column> &columns, const QString &parent, int place)
    {
        QList<Candidate> candidates;
        for (const Column &column : columns) {
            candidates += {.kind = Kind::Column,
                           .name = column.name,
                           .text = written(column.name),
                           .parent = parent,
                           .details = column.details};
        }
        addLocal(candidates, place);
    }

    // A name that several tables of the query have needs to say which.
    void addColumnsInScope()
    {
        for (qsizetype level = 0; level < m_scope.levels().size(); ++level) {
            const QList<Relation> &relations = m_scope.levels()[level];
            QHash<QString, int> counts;
            for (const Relation &relation : relations) {
                for (const Column &column : relation.columns)
                    ++counts[column.name];
            }
            QList<Candidate> candidates;
            for (const Relation &relation : relations) {
                for (const Column &column : relation.columns) {
                    const bool isClear = counts.value(column.name) == 1 || relation.name.isEmpty();
                    candidates +=
                        {.kind = Kind::Column,
                         .name = column.name,
                         .text = isClear || m_words.isQuoted
                                     ? written(column.name)
                                     : written(relation.name) + u'.' + written(column.name),
                         .parent = relation.name,
                         .details = column.details};
                }
            }
            addLocal(candidates, level == 0 ? 0 : 2);
        }
    }

    void addRelations()
    {
        QList<Candidate> candidates;
        for (const QList<Relation> &level : m_scope.levels()) {
            for (const Relation &relation : level) {
                if (!relation.name.isEmpty())
                    candidates += {.kind = Kind::Alias,
                                   .name = relation.name,
                                   .text = written(relation.name),
                                   .parent = relation.path.join(u'.'),
                                   .details = {}};
            }
        }
        addLocal(candidates, 3);
    }

    void addCommonTables()
    {
        QList<Candidate> candidates;
        for (const Relation &table : m_scope.commonTables())
            candidates += {.kind = Kind::CommonTable,
                           .name = table.name,
                           .text = written(table.name),
                           .parent = {},
                           .details = {}};
        addLocal(candidates, 0);
    }

    void addTables(int place, const DXNameIndex::Filter &filter, bool isQualified)
    {
        for (const auto &hit : m_names->tableIndex().find(m_words.typed, maximum, filter)) {
            const auto &table = *m_names->tables()[hit.index];
            const QString schema =
                isQualified ? m_completion.quoted(table.entryParentDisplay) + u'.' : QString();
            add(hit.match, place,
                {.kind = Kind::Table,
                 .name = table.entryName,
                 .text = schema + written(table.entryName),
                 .parent = table.entryParentDisplay,
                 .details = table.entryDetails});
        }
    }

    void addAllTables(int place)
    {
        if (!m_names)
            return;
        const auto isDefault = [this](qsizetype index) {
            return m_names->isInDefaultSchema(*m_names->tables()[index]);
        };
        addTables(place, isDefault, false);
        // A quote that was typed cannot hold the schema, too.
        addTables(
            place + 2, [&](qsizetype index) { return !isDefault(index); }, !m_words.isQuoted);
        for (const auto &hit : m_names->schemaIndex().find(m_words.typed, maximum)) {
            const QString &name = m_names->schemas()[hit.index]->entryName;
            add(hit.match, place + 1,
                {.kind = Kind::Schema,
                 .name = name,
                 .text = written(name),
                 .parent = {},
                 .details = {}});
        }
    }

    void addAllColumns(int place)
    {
        if (!m_names)
            return;
        for (const auto &hit : m_names->columnIndex().find(m_words.typed, maximum)) {
            const auto &column = *m_names->columns()[hit.index];
            add(hit.match, place,
                {.kind = Kind::Column,
                 .name = column.entryName,
                 .text = written(column.entryName),
                 .parent = column.entryParentDisplay,
                 .details = column.entryDetails});
        }
    }

    // In small letters where the statement has its key words so.
    bool writesSmall() const
    {
        if (!m_words.typed.isEmpty())
            return m_words.typed.back().isLower();
        const auto &words = m_words.words;
        const auto first = std::find_if(words.begin(), words.end(), [](const DXSQLWord &word) {
            return word.kind == SQLToken::Kind::Word;
        });
        return first != words.end() && first->name.front().isLower();
    }

    void addWords(int place, bool withFunctions)
    {
        if (m_words.isQuoted)
            return;
        const bool small = writesSmall();
        for (const auto &hit :
             m_completion.m_keyWords.find(m_words.typed, maximum, withFunctions)) {
            const auto &[word, isFunction] = m_completion.m_keyWords.at(hit.index);
            const QString text = small ? word.toLower() : isFunction ? word : word.toUpper();
            add(hit.match, isFunction ? place : place + 1,
                {.kind = isFunction ? Kind::Function : Kind::Keyword,
                 .name = text,
                 .text = text,
                 .parent = {},
                 .details = {}});
        }
    }

    void addTargetColumns()
    {
        Relation target = m_scope.target();
        if (target.name.isEmpty() && !m_scope.levels().isEmpty())
            target = m_scope.levels().first().value(0);
        erase(target.columns);
        addColumns(target.columns, target.name, 0);
    }

    void addSharedColumns()
    {
        const QList<Relation> relations = m_scope.levels().value(0);
        QHash<QString, int> counts;
        for (const Relation &relation : relations) {
            for (const Column &column : relation.columns)
                ++counts[column.name];
        }
        QList<Column> shared = relations.isEmpty() ? QList<Column>() : relations.last().columns;
        shared.removeIf([&](const Column &column) { return counts.value(column.name) < 2; });
        erase(shared);
        addColumns(shared, {}, 0);
    }

    // What the list holds already.
    void erase(QList<Column> &columns) const
    {
        columns.removeIf(
            [this](const Column &column) { return contains(m_clause.used, column.name); });
    }

    void collectQualified()
    {
        const QStringList &path = m_clause.qualifier;
        const Relation *relation = path.size() == 1 && m_clause.kind != Clause::Relation
                                       ? m_scope.relationCalled(path[0])
                                       : nullptr;
        if (relation) {
            addColumns(relation->columns, {}, 0);
            return;
        }
        if (!m_names)
            return;
        if (m_clause.kind != Clause::Relation)
            addColumns(columnsOf(path), {}, 0);
        if (path.size() > 1 || !m_names->schemaCalled(path[0]))
            return;
        const QString schema = m_names->schemaCalled(path[0])->entryName;
        addTables(
            0,
            [&](qsizetype index) { return m_names->tables()[index]->entryParentDisplay == schema; },
            false);
    }

    void collectUnqualified()
    {
        switch (m_clause.kind) {
        case Clause::NewName:
            return;
        case Clause::Start:
        case Clause::Keywords:
            addWords(0, false);
            return;
        case Clause::Relation:
            addCommonTables();
            addAllTables(1);
            addWords(10, false);
            return;
        case Clause::TargetColumn:
            addTargetColumns();
            return;
        case Clause::SharedColumn:
            addSharedColumns();
            return;
        case Clause::Expression:
            break;
        }
        if (m_clause.mayUseOutputs)
            addColumns(m_scope.outputs(), {}, 1);
        addColumnsInScope();
        addRelations();
        addWords(4, true);
        if (m_words.typed.isEmpty())
            return;
        if (std::all_of(m_scope.levels().begin(), m_scope.levels().end(),
                        [](const auto &level) { return level.isEmpty(); }))
            addAllColumns(6);
        addAllTables(7);
    }

    const DXSQLCompletion &m_completion;
    const DXSQLWords &m_words;
    const std::shared_ptr<const DXCompletionNames> m_names;
    const DXSQLClause m_clause;
    const DXSQLScope m_scope;
    QList<Found> m_found;
};

DXSQLCompletion::DXSQLCompletion(const std::shared_ptr<const DabroDBC> &details)
    : m_options(optionsOf(*details))
    , m_client(details->createNewClient())
    , m_cache(DXCompletionCache::of(details))
    , m_keyWords(*details)
{ }

DXSQLCompletion::~DXSQLCompletion() = default;

void DXSQLCompletion::load()
{
    m_cache->load();
}

QString DXSQLCompletion::quoted(const QString &name) const
{
    if (!isPlainName(name))
        return inQuotes(name);
    return m_client ? m_client->escapeTablePaths(name) : name;
}

DXSQLCompletion::Answer DXSQLCompletion::complete(const QString &text, qsizetype caret) const
{
    const DXSQLWords words = DXSQLWords::of(m_options, text, caret);
    Answer answer{
        .typed = words.typed, .replaced = words.typedRange, .isQualified = false, .candidates = {}};
    if (words.isInLiteral)
        return answer;
    Collector collector(*this, words);
    answer.isQualified = collector.isQualified();
    answer.candidates = collector.collect();
    return answer;
}
