// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXSQLClause.h"

#include "editing/DXSQLScope.h"

#include <QList>

#include <algorithm>

namespace
{

using Kind = DXSQLClause::Kind;

// Reads the words of one pair of brackets, or of the whole statement, up to the caret or to the
// brackets around it.
class Reader final
{
public:
    Reader(const DXSQLWords &words, qsizetype begin, Kind kind)
        : m_words(words.words)
        , m_begin(begin)
        , m_kind(kind)
    { }

    void readUpTo(qsizetype end)
    {
        for (qsizetype index = m_begin; index < end;) {
            take(index);
            const DXSQLWord &word = m_words[index];
            index = word.is(u"(") && word.partner >= 0 && word.partner < end ? word.partner + 1
                                                                             : index + 1;
        }
    }

    Kind kind() const { return m_kind; }
    bool isOrder() const { return m_isOrder; }
    const QStringList &assigned() const { return m_assigned; }
    /// What the list is that the bracket at index opens, behind everything read.
    Kind kindInside(qsizetype index) const;

private:
    const DXSQLWord &at(qsizetype index) const
    {
        static const DXSQLWord none{
            .kind = SQLToken::Kind::Other, .name = {}, .key = {}, .range = {}};
        return index >= m_begin && index < m_words.size() ? m_words[index] : none;
    }
    bool isIn(std::initializer_list<QStringView> statements) const
    {
        return at(m_begin).isOneOf(statements);
    }
    bool isDefinition() const
    {
        return isIn({u"create", u"alter", u"drop", u"comment", u"truncate", u"analyze", u"vacuum",
                     u"lock", u"copy", u"grant", u"revoke", u"cluster", u"reindex"});
    }

    // A list of nothing but names.
    bool isList() const
    {
        return m_kind == Kind::SharedColumn || (m_kind == Kind::TargetColumn && !m_isSet);
    }
    void take(qsizetype index);
    bool takeClause(qsizetype index);
    bool beginsRelation(qsizetype index) const;
    void takeName(qsizetype index);
    void takeSign(const DXSQLWord &word);

    const QList<DXSQLWord> &m_words;
    const qsizetype m_begin;
    Kind m_kind;
    bool m_isFrom = false;
    bool m_isSet = false;
    bool m_isOrder = false;
    QStringList m_assigned;
};

bool Reader::beginsRelation(qsizetype index) const
{
    const DXSQLWord &word = at(index);
    const DXSQLWord &before = at(index - 1);
    if (word.is(u"from"))
        return !before.is(u"distinct");
    if (word.is(u"using"))
        return isIn({u"delete", u"merge"});
    if (word.is(u"update"))
        return index == m_begin || before.is(u"explain");
    if (word.isOneOf({u"table", u"view", u"references"}))
        return !before.isOneOf({u"create", u"temporary", u"temp", u"unlogged", u"replace",
                                u"materialized", u"exists"})
               || isIn({u"drop", u"alter"});
    if (word.isOneOf({u"truncate", u"copy", u"analyze", u"vacuum", u"lock"}))
        return index == m_begin;
    if (word.is(u"on"))
        return isDefinition();
    return word.isOneOf({u"join", u"into"});
}

// Whether the word begins a clause; it says then what follows.
bool Reader::takeClause(qsizetype index)
{
    const DXSQLWord &word = at(index);
    if (beginsRelation(index)) {
        m_kind = Kind::Relation;
        m_isFrom = word.isOneOf({u"from", u"join", u"using"});
        return true;
    }
    if (word.is(u"set") && !isIn({u"set", u"alter"})) {
        m_kind = Kind::TargetColumn;
        m_isSet = true;
        m_isFrom = false;
        return true;
    }
    if (word.isOneOf({u"lateral", u"only", u"if", u"not", u"exists", u"concurrently"})
        && m_kind == Kind::Relation)
        return true;
    if (word.isOneOf({u"inner", u"left", u"right", u"full", u"cross", u"natural", u"outer"})
        && m_isFrom) {
        m_kind = Kind::Keywords;
        return true;
    }
    if (word.isOneOf({u"group", u"order"}))
        m_isOrder = true;
    const bool beginsExpression = word.isOneOf(
        {u"select", u"where",   u"having", u"on",       u"by",    u"returning", u"when", u"then",
         u"else",   u"and",     u"or",     u"not",      u"limit", u"offset",    u"case", u"in",
         u"like",   u"between", u"is",     u"distinct", u"all",   u"values",    u"set"});
    if (beginsExpression) {
        m_isFrom = m_isFrom
                   && word.isOneOf({u"on", u"and", u"or", u"not", u"in", u"like", u"between", u"is",
                                    u"case", u"when", u"then", u"else"});
        m_isSet = m_isSet && !word.isOneOf({u"where", u"returning"});
        m_kind = Kind::Expression;
    }
    return beginsExpression;
}

void Reader::takeName(qsizetype index)
{
    if (m_kind == Kind::Start || m_kind == Kind::Relation)
        m_kind = Kind::Keywords;
    else if (m_kind == Kind::TargetColumn && m_isSet)
        m_assigned += at(index).name;
}

void Reader::takeSign(const DXSQLWord &word)
{
    if (word.is(u",") && m_isFrom)
        m_kind = Kind::Relation;
    else if (word.is(u",") && m_isSet)
        m_kind = Kind::TargetColumn;
    else if (word.is(u".") || (word.is(u",") && isList()))
        return;
    else if (word.is(u"(") && m_kind == Kind::Relation)
        m_kind = Kind::Keywords;
    else if (m_kind != Kind::Keywords || !m_isFrom)
        m_kind = Kind::Expression;
}

void Reader::take(qsizetype index)
{
    const DXSQLWord &word = at(index);
    const bool isQualified = at(index - 1).is(u".");
    if (!isQualified && takeClause(index))
        return;
    if (word.is(u"as") && !isQualified)
        m_kind = isIn({u"create", u"with", u"declare", u"prepare"}) ? Kind::Start : Kind::NewName;
    else if (word.isName())
        takeName(index);
    else
        takeSign(word);
}

Kind Reader::kindInside(qsizetype index) const
{
    const DXSQLWord &before = at(index - 1);
    if (before.is(u"using") && m_isFrom)
        return Kind::SharedColumn;
    if (before.isOneOf({u"from", u"join", u"lateral"}) || (before.is(u",") && m_isFrom))
        return Kind::Relation;
    // INSERT INTO t (…), COPY t (…), CREATE INDEX … ON t (…), REFERENCES t (…)
    qsizetype first = index - 1;
    while (at(first).isName() && at(first - 1).is(u"."))
        first -= 2;
    if (before.isName() && at(first - 1).isOneOf({u"into", u"copy"}))
        return Kind::TargetColumn;
    if (at(index - 1).is(u"as") && isIn({u"with"}))
        return Kind::Start;
    return Kind::Expression;
}

QStringList qualifierAt(const DXSQLWords &words)
{
    QStringList qualifier;
    for (qsizetype index = words.caret - 1; index >= 1; index -= 2) {
        if (!words.words[index].is(u".") || !words.words[index - 1].isName())
            break;
        qualifier.prepend(words.words[index - 1].name);
    }
    return qualifier;
}

QStringList namesInList(const DXSQLWords &words, qsizetype bracket)
{
    QStringList names;
    const qsizetype end =
        words.words[bracket].partner >= 0 ? words.words[bracket].partner : words.words.size();
    for (qsizetype index = bracket + 1; index < end; ++index) {
        if (words.words[index].isName())
            names += words.words[index].name;
    }
    return names;
}

} // namespace

DXSQLClause DXSQLClause::at(const DXSQLWords &words)
{
    DXSQLClause clause;
    clause.qualifier = qualifierAt(words);
    const qsizetype end = words.caret - 2 * clause.qualifier.size();
    Kind outside = Kind::Start;
    qsizetype begin = 0;
    for (qsizetype index = 0; index <= words.caret; ++index) {
        const DXSQLWord &word = words.words[index];
        const bool isAround = word.is(u"(") && (word.partner < 0 || word.partner > words.caret);
        if (!isAround && index != words.caret)
            continue;
        Reader reader(words, begin, outside);
        reader.readUpTo(std::min(index, end));
        if (index == words.caret) {
            clause.kind = reader.kind();
            clause.mayUseOutputs = reader.isOrder();
            if (clause.used.isEmpty())
                clause.used = reader.assigned();
            break;
        }
        outside = reader.kindInside(index);
        const bool isList = outside == Kind::TargetColumn || outside == Kind::SharedColumn;
        clause.used = isList ? namesInList(words, index) : QStringList();
        begin = index + 1;
    }
    return clause;
}
