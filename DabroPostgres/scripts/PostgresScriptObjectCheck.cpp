// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresScriptObjectCheck.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptObject.h"
#include "scripts/PostgresScriptText.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A row of the query.
struct Named
{
    QString kind;
    bool isMeant;
    QString name;
    QString arguments;
};

QString quoted(const QString &name)
{
    return u'"' + name + u'"';
}

QString withArticle(const QString &kind)
{
    return (QStringView(u"aeiou").contains(kind.front()) ? "an "_L1 : "a "_L1) + kind;
}

// What was found for an object, and what that means.
class Findings final
{
public:
    Findings(const PostgresScriptObject &object, const QString &kind)
        : m_object(object)
        , m_kind(kind)
    { }

    void add(const DatabaseResultSet &row)
    {
        m_found += {.kind = row.stringForColumnIndex(0).toText(),
                    .isMeant = row.boolForColumn(u"is_meant"_s).value_or(false),
                    .name = row.stringForColumnIndex(2).toText(),
                    .arguments = row.stringForColumnIndex(3).toText()};
    }
    bool isFound() const { return !meant(kinds()).isEmpty(); }
    /// What is wrong when it is not.
    QString refusal() const;

private:
    static QStringList relations() { return {u"table"_s, u"view"_s, u"materialized-view"_s}; }
    QStringList kinds() const
    {
        return m_kind == "row"_L1 ? QStringList{u"table"_s, u"view"_s} : QStringList(m_kind);
    }
    // The first kind among these of which there is just what is meant; null for none.
    QString meant(const QStringList &kinds) const;
    QString otherKind() const;
    QString missing(const QString &kind, const QString &name, const QString &where) const;

    const PostgresScriptObject &m_object;
    const QString m_kind;
    QList<Named> m_found;
};

QString Findings::meant(const QStringList &kinds) const
{
    const auto found = std::find_if(m_found.begin(), m_found.end(), [&](const Named &each) {
        return each.isMeant && kinds.contains(each.kind);
    });
    return found == m_found.end() ? QString() : found->kind;
}

// What else, of those things that share their names, carries the name.
QString Findings::otherKind() const
{
    return meant(relations() << u"sequence"_s << u"index"_s << u"system view"_s << u"type"_s
                             << u"enumeration"_s << u"system function"_s);
}

QString Findings::missing(const QString &kind, const QString &name, const QString &where) const
{
    QStringList near;
    for (const Named &each : m_found) {
        if (each.kind == kind)
            near += quoted(kind == "function"_L1 ? each.name + u'(' + each.arguments + u')'
                                                 : each.name);
    }
    const QString but = near.isEmpty() ? QString() : ", but "_L1 + near.join(", "_L1);
    return u"There is no %1 %2%3%4."_s.arg(kind, quoted(name), where, but);
}

QString Findings::refusal() const
{
    const QString schema = m_object.schema;
    if (m_kind == "database"_L1)
        return missing(m_kind, m_object.name, {});
    if (!schema.isEmpty() && meant({u"schema"_s}).isNull())
        return missing(u"schema"_s, schema, {});
    const QString path = schema.isEmpty() ? m_object.name : schema + u'.' + m_object.name;
    if (!m_object.member.isNull() && !meant(relations()).isNull())
        return missing(m_kind, m_object.member, " in "_L1 + quoted(path));
    if (const QString other = otherKind(); m_object.member.isNull() && !other.isNull())
        return u"%1 is %2, not %3."_s.arg(quoted(path), withArticle(other), withArticle(m_kind));
    const QString place =
        schema.isEmpty() ? u" in the search path"_s : u" in the schema "_s + quoted(schema);
    if (m_kind == "function"_L1)
        return missing(m_kind, m_object.name + u'(' + m_object.arguments + u')', place);
    const bool isOfTable = !m_object.member.isNull() || m_kind == "row"_L1;
    return missing(isOfTable ? u"table"_s : m_kind, m_object.name, place);
}

QString literal(const QString &text)
{
    return QString(text).replace(u'\'', "''"_L1);
}

} // namespace

bool PostgresScriptObjectCheck::exists(const PostgresScriptObject &object, const QString &kind,
                                       const DabroDBC &details, DXError *error)
{
    Findings findings(object, kind);
    DXError failure;
    PostgresCatalogueReader::read(
        details,
        PostgresScriptText::query(u"List_ScriptedObjects"_s,
                                  {{"{SCHEMA_NAME}"_L1, literal(object.schema)},
                                   {"{OBJECT_NAME}"_L1, literal(object.name)},
                                   {"{MEMBER_NAME}"_L1, literal(object.member)},
                                   {"{ARGUMENTS}"_L1, literal(object.arguments)}}),
        [&findings](const DatabaseResultSet &row) { findings.add(row); }, &failure);
    if (!failure && !findings.isFound())
        failure = DXError(u"postgres.scriptCatalogue"_s, 0, findings.refusal());
    if (failure)
        DXError::report(error, failure);
    return !failure;
}
