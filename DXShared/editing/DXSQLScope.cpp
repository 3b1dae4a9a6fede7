// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXSQLScope.h"

#include <algorithm>

namespace
{

using Kind = SQLToken::Kind;

bool endsFrom(const DXSQLWord &word)
{
    return word.isOneOf({u"where", u"group", u"having", u"order", u"limit", u"offset", u"fetch",
                         u"window", u"union", u"intersect", u"except", u"returning", u"for", u"set",
                         u"values", u"select", u"when", u"do"});
}

// Words that go on with FROM, so that no alias is called so without AS.
bool followsItem(const DXSQLWord &word)
{
    return endsFrom(word)
           || word.isOneOf({u"join",     u"inner",   u"left",       u"right", u"full",
                            u"cross",    u"natural", u"on",         u"using", u"tablesample",
                            u"with",     u"default", u"from",       u"and",   u"as",
                            u"conflict", u"cascade", u"restrict",   u"add",   u"drop",
                            u"alter",    u"rename",  u"overriding", u"to"});
}

bool joinsQueries(const DXSQLWord &word)
{
    return word.isOneOf({u"union", u"intersect", u"except"});
}

bool isChange(const DXSQLWord &word)
{
    return word.isOneOf({u"insert", u"update", u"delete", u"merge"});
}

// Statements that name tables behind TABLE, ON and the like.
bool isDefinition(const DXSQLWord &word)
{
    return word.isOneOf({u"create", u"alter", u"drop", u"comment", u"truncate", u"analyze",
                         u"vacuum", u"lock", u"copy", u"grant", u"revoke", u"cluster", u"reindex"});
}

bool isSame(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

DXSQLScope::DXSQLScope(const DXSQLWords &words, const ColumnsOf &columnsOf)
    : m_words(words.words)
    , m_columnsOf(columnsOf)
{
    QList<Range> around{{0, m_words.size()}};
    for (qsizetype index = 0; index < words.caret; ++index) {
        const DXSQLWord &word = m_words[index];
        if (!word.is(u"(") || (word.partner >= 0 && word.partner < words.caret))
            continue;
        if (beginsQuery(at(index + 1)))
            around += inside(index, m_words.size());
    }
    for (const Range &query : std::as_const(around))
        readLevel(query, words.caret);
}

bool DXSQLScope::beginsQuery(const DXSQLWord &word)
{
    return isChange(word) || word.isOneOf({u"select", u"with", u"values", u"table"});
}

const DXSQLScope::Relation *DXSQLScope::relationCalled(const QString &name) const
{
    for (const Relations &level : m_levels) {
        const auto found = std::find_if(level.begin(), level.end(), [&name](const Relation &each) {
            return isSame(each.name, name);
        });
        if (found != level.end())
            return &*found;
    }
    return isSame(m_target.name, name) && !name.isEmpty() ? &m_target : nullptr;
}

const DXSQLWord &DXSQLScope::at(qsizetype index) const
{
    static const DXSQLWord none{.kind = Kind::Other, .name = {}, .key = {}, .range = {}};
    return index >= 0 && index < m_words.size() ? m_words[index] : none;
}

// The index behind a word, and behind what it encloses when it is a bracket.
qsizetype DXSQLScope::skip(qsizetype index) const
{
    if (!at(index).is(u"("))
        return index + 1;
    return at(index).partner >= 0 ? at(index).partner + 1 : m_words.size();
}

DXSQLScope::Range DXSQLScope::inside(qsizetype bracket, qsizetype end) const
{
    const qsizetype partner = at(bracket).partner;
    return {bracket + 1, partner >= 0 ? std::min(partner, end) : end};
}

void DXSQLScope::readLevel(Range query, qsizetype caret)
{
    // What stands before the query itself: EXPLAIN, CREATE VIEW … AS and the like.
    if (query.begin == 0
        && at(0).isOneOf({u"explain", u"create", u"declare", u"prepare", u"copy"})) {
        for (qsizetype index = 1; index < caret; index = skip(index)) {
            if (at(index).isOneOf({u"select", u"with", u"insert", u"update", u"delete"})
                && (at(0).is(u"explain") || at(index - 1).isOneOf({u"as", u"for"}))) {
                query.begin = index;
                break;
            }
        }
    }
    m_commonTables = readCommonTables(query, m_commonTables, 0);
    // A common table expression does not see what the query behind it reads.
    if (caret < query.begin)
        return;
    const Range core = coreAround(query, caret);
    Relations sources = readSources(core, m_commonTables, 0);
    if (isChange(at(core.begin)) && !sources.isEmpty()) {
        m_target = sources.first();
        if (isInSelectOfInsert(core, caret))
            sources.removeFirst();
    }
    m_outputs =
        at(core.begin).is(u"select") ? outputsOfCore(core, m_commonTables, 0) : QList<Column>();
    m_levels.prepend(sources);
}

bool DXSQLScope::isInSelectOfInsert(const Range &core, qsizetype caret) const
{
    bool isInSelect = false;
    for (qsizetype index = core.begin; index < caret; index = skip(index)) {
        if (at(index).isOneOf({u"select", u"returning", u"conflict"}))
            isInSelect = at(index).is(u"select");
    }
    return isInSelect;
}

DXSQLScope::Range DXSQLScope::coreAround(const Range &query, qsizetype index) const
{
    Range core = query;
    for (qsizetype at = query.begin; at < query.end; at = skip(at)) {
        if (!joinsQueries(this->at(at)))
            continue;
        if (at >= index)
            return {core.begin, at};
        core.begin = at + (this->at(at + 1).isOneOf({u"all", u"distinct"}) ? 2 : 1);
    }
    return core;
}

// Leaves query to begin behind its WITH.
DXSQLScope::Relations DXSQLScope::readCommonTables(Range &query, Relations known, int depth)
{
    if (!at(query.begin).is(u"with"))
        return known;
    qsizetype index = query.begin + (at(query.begin + 1).is(u"recursive") ? 2 : 1);
    while (index < query.end && at(index).isName()) {
        Relation table{.name = at(index++).name, .isAlias = false, .path = {}, .columns = {}};
        QStringList told;
        if (at(index).is(u"(")) {
            told = readNames(inside(index, query.end));
            index = skip(index);
        }
        while (at(index).isOneOf({u"as", u"not", u"materialized"}))
            ++index;
        if (at(index).is(u"(")) {
            table.columns = outputsOf(inside(index, query.end), known, depth + 1);
            index = std::min(skip(index), query.end);
        }
        rename(table.columns, told);
        known += table;
        while (index < query.end && !at(index).is(u",") && !beginsQuery(at(index)))
            index = skip(index);
        if (!at(index).is(u","))
            break;
        ++index;
    }
    query.begin = std::min(index, query.end);
    return known;
}

void DXSQLScope::rename(QList<Column> &columns, const QStringList &names)
{
    for (qsizetype index = 0; index < names.size(); ++index) {
        if (index < columns.size())
            columns[index].name = names[index];
        else
            columns += {names[index], {}};
    }
}

DXSQLScope::Relations DXSQLScope::readSources(const Range &core, const Relations &known, int depth)
{
    Relations sources;
    const DXSQLWord &first = at(core.begin);
    const bool usesTables = first.isOneOf({u"delete", u"merge"});
    for (qsizetype index = core.begin; index < core.end;) {
        const DXSQLWord &word = at(index);
        const bool isFrom = (word.is(u"from") && !at(index - 1).is(u"distinct"))
                            || (word.is(u"using") && usesTables);
        const bool isTarget = (word.is(u"into") && isChange(first))
                              || (word.is(u"update") && index == core.begin)
                              || (isDefinition(first) && namesTable(index, core.begin));
        if (isFrom) {
            index = readFrom(index + 1, core, known, depth, sources);
        } else if (isTarget) {
            index = readTarget(index + 1, core, sources);
        } else {
            index = skip(index);
        }
    }
    return sources;
}

qsizetype DXSQLScope::readTarget(qsizetype index, const Range &core, Relations &sources) const
{
    while (at(index).isOneOf({u"only", u"if", u"not", u"exists", u"concurrently"}))
        ++index;
    if (index >= core.end || !at(index).isName() || followsItem(at(index)))
        return index;
    Relation target = resolve(readPath(index, core.end), {});
    if (!isDefinition(at(core.begin)))
        index = readAlias(index, core.end, target);
    sources += target;
    return index;
}

bool DXSQLScope::namesTable(qsizetype index, qsizetype begin) const
{
    const DXSQLWord &word = at(index);
    return word.isOneOf({u"table", u"on", u"references"})
           || (index == begin && word.isOneOf({u"truncate", u"copy", u"analyze", u"lock"})
               && !at(index + 1).is(u"table"));
}

qsizetype DXSQLScope::readFrom(qsizetype index, const Range &core, const Relations &known,
                               int depth, Relations &sources)
{
    while (index < core.end) {
        index = readItem(index, core, known, depth, sources);
        for (; index < core.end && !at(index).isOneOf({u",", u"join"}); index = skip(index)) {
            // USING without a list goes on with more tables of DELETE and MERGE.
            if (endsFrom(at(index)) || (at(index).is(u"using") && !at(index + 1).is(u"(")))
                return index;
        }
        ++index;
    }
    return index;
}

qsizetype DXSQLScope::readItem(qsizetype index, const Range &core, const Relations &known,
                               int depth, Relations &sources)
{
    while (at(index).isOneOf({u"lateral", u"only"}))
        ++index;
    if (at(index).is(u"(")) {
        const Range group = inside(index, core.end);
        if (!beginsQuery(at(group.begin)) && !at(group.begin).is(u"(")) {
            readFrom(group.begin, group, known, depth, sources);
            return std::min(skip(index), core.end);
        }
        Relation derived{.name = {}, .isAlias = true, .path = {}, .columns = {}};
        derived.columns = outputsOf(group, known, depth + 1);
        index = readAlias(std::min(skip(index), core.end), core.end, derived);
        sources += derived;
        return index;
    }
    if (!at(index).isName() || followsItem(at(index)))
        return index;
    const QStringList path = readPath(index, core.end);
    Relation relation{.name = path.last(), .isAlias = false, .path = {}, .columns = {}};
    if (at(index).is(u"("))
        index = std::min(skip(index), core.end);
    else
        relation = resolve(path, known);
    index = readAlias(at(index).is(u"*") ? index + 1 : index, core.end, relation);
    sources += relation;
    return index;
}

qsizetype DXSQLScope::readAlias(qsizetype index, qsizetype end, Relation &relation) const
{
    const bool isTold = index < end && at(index).is(u"as");
    if (isTold)
        ++index;
    if (index < end && at(index).isName() && (isTold || !followsItem(at(index)))) {
        relation.name = at(index++).name;
        relation.isAlias = true;
    } else if (!isTold) {
        return index;
    }
    if (index < end && at(index).is(u"(")) {
        rename(relation.columns, readNames(inside(index, end)));
        index = std::min(skip(index), end);
    }
    return index;
}

QStringList DXSQLScope::readPath(qsizetype &index, qsizetype end) const
{
    QStringList path;
    while (index < end && at(index).isName()) {
        path += at(index++).name;
        if (index + 1 >= end || !at(index).is(u".") || !at(index + 1).isName())
            break;
        ++index;
    }
    return path;
}

// The first name of each part between commas.
QStringList DXSQLScope::readNames(const Range &list) const
{
    QStringList names;
    bool isFirst = true;
    for (qsizetype index = list.begin; index < list.end; index = skip(index)) {
        if (isFirst && at(index).isName())
            names += at(index).name;
        isFirst = at(index).is(u",");
    }
    return names;
}

DXSQLScope::Relation DXSQLScope::resolve(const QStringList &path, const Relations &known) const
{
    if (path.size() == 1) {
        const auto found =
            std::find_if(known.rbegin(), known.rend(),
                         [&path](const Relation &each) { return isSame(each.name, path[0]); });
        if (found != known.rend())
            return *found;
    }
    return {.name = path.last(), .isAlias = false, .path = path, .columns = m_columnsOf(path)};
}
