// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXSQLScope.h"

#include <algorithm>

// What the queries in parentheses call their columns.

namespace
{

constexpr int deepest = 12;

bool isSame(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

QList<DXSQLScope::Column> DXSQLScope::outputsOf(Range query, const Relations &known, int depth)
{
    if (depth > deepest)
        return {};
    while (query.begin < query.end && at(query.begin).is(u"("))
        query = inside(query.begin, query.end);
    const Relations tables = readCommonTables(query, known, depth);
    return outputsOfCore(coreAround(query, query.begin), tables, depth);
}

QList<DXSQLScope::Column> DXSQLScope::outputsOfCore(const Range &core, const Relations &known,
                                                    int depth)
{
    if (at(core.begin).is(u"values"))
        return outputsOfValues(core);
    if (at(core.begin).is(u"table")) {
        qsizetype index = core.begin + 1;
        const QStringList path = readPath(index, core.end);
        return path.isEmpty() ? QList<Column>() : resolve(path, known).columns;
    }
    const Range list = selectList(core);
    if (list.begin >= list.end)
        return {};
    const Relations sources = readSources(core, known, depth);
    QList<Column> columns;
    for (qsizetype index = list.begin, from = index; index <= list.end; index = skip(index)) {
        if (index < list.end && !at(index).is(u","))
            continue;
        columns += columnsOfItem({from, index}, sources);
        from = index + 1;
    }
    return columns;
}

QList<DXSQLScope::Column> DXSQLScope::outputsOfValues(const Range &core) const
{
    QList<Column> columns;
    const Range row = inside(core.begin + 1, core.end);
    bool isFirst = true;
    for (qsizetype index = row.begin; index < row.end; index = skip(index)) {
        if (isFirst)
            columns += {u"column%1"_qs.arg(columns.size() + 1), {}};
        isFirst = at(index).is(u",");
    }
    return columns;
}

// Behind SELECT, or behind RETURNING in a statement that changes rows; nothing when there is none.
DXSQLScope::Range DXSQLScope::selectList(const Range &core) const
{
    qsizetype begin = core.begin;
    if (!at(begin).is(u"select")) {
        while (begin < core.end && !at(begin).is(u"returning"))
            begin = skip(begin);
    }
    ++begin;
    if (at(begin).isOneOf({u"all", u"distinct"})) {
        ++begin;
        if (at(begin).is(u"on") && at(begin + 1).is(u"("))
            begin = skip(begin + 1);
    }
    qsizetype end = begin;
    while (end < core.end) {
        const bool ends = at(end).isOneOf({u"from", u"into", u"where", u"group", u"having",
                                           u"order", u"limit", u"offset", u"fetch", u"window",
                                           u"union", u"intersect", u"except", u"for"});
        if (ends && !at(end - 1).isOneOf({u"as", u".", u"distinct"}))
            break;
        end = skip(end);
    }
    return {begin, std::min(end, core.end)};
}

QList<DXSQLScope::Column> DXSQLScope::columnsOfItem(const Range &item,
                                                    const Relations &sources) const
{
    const qsizetype size = item.end - item.begin;
    if (!at(item.end - 1).is(u"*") || size == 2) {
        const QString name = nameOfItem(item);
        if (name.isEmpty())
            return {};
        return {{name, isPath(item) ? columnCalled(item, sources).details : QString()}};
    }
    QList<Column> columns;
    for (const Relation &source : sources) {
        if (size == 1 || isSame(source.name, at(item.end - 3).name))
            columns += source.columns;
    }
    return columns;
}

bool DXSQLScope::isPath(const Range &item) const
{
    for (qsizetype index = item.begin; index < item.end; ++index) {
        const bool isDot = (index - item.begin) % 2 == 1;
        if (isDot ? !at(index).is(u".") : !at(index).isName())
            return false;
    }
    return item.begin < item.end;
}

DXSQLScope::Column DXSQLScope::columnCalled(const Range &path, const Relations &sources) const
{
    const bool isQualified = path.end - path.begin > 1;
    const QString &name = at(path.end - 1).name;
    for (const Relation &source : sources) {
        if (isQualified && !isSame(source.name, at(path.end - 3).name))
            continue;
        for (const Column &column : source.columns) {
            if (isSame(column.name, name))
                return column;
        }
    }
    return {name, {}};
}

// As the server names it: by its alias, its column or its function; nothing for what has no name.
QString DXSQLScope::nameOfItem(Range item) const
{
    while (item.begin < item.end) {
        const DXSQLWord &last = at(item.end - 1);
        const DXSQLWord &before = item.end - item.begin > 1 ? at(item.end - 2) : at(-1);
        if (last.isName() && before.is(u"as"))
            return last.name;
        if (last.is(u"end"))
            return u"case"_qs;
        const bool isType =
            last.isName() && (before.is(u"::") || last.isOneOf({u"precision", u"varying"}));
        if (isType) {
            // What is cast keeps its name.
            while (item.end > item.begin && !at(item.end - 1).is(u"::"))
                --item.end;
            --item.end;
        } else if (last.isName()) {
            const bool isAlias = before.isName() || before.is(u")")
                                 || (before.key.isEmpty() && before.kind != SQLToken::Kind::Other
                                     && !before.isCaret());
            return isAlias || isPath(item) ? last.name : QString();
        } else if (last.is(u")") && last.partner > item.begin) {
            const DXSQLWord &called = at(last.partner - 1);
            item.end = last.partner;
            if (called.isOneOf({u"over", u"filter"}))
                --item.end;
            else
                return isPath({item.begin, item.end}) ? called.name : QString();
        } else {
            return {};
        }
    }
    return {};
}
