// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresScriptObject.h"

#include <QStringList>

#include <algorithm>

namespace
{

constexpr QChar quote = u'"';

// The name that rest begins with, cut from it; empty for none or one that is not closed.
QString takeName(QStringView &rest, bool mayHaveArguments)
{
    QString name;
    if (!rest.startsWith(quote)) {
        const auto ends = [mayHaveArguments](QChar each) {
            return each == u'.' || (mayHaveArguments && each == u'(');
        };
        const auto end = std::find_if(rest.begin(), rest.end(), ends);
        name = rest.first(end - rest.begin()).toString();
        rest = rest.sliced(name.size());
        return name;
    }
    for (qsizetype at = 1; at < rest.size(); ++at) {
        if (rest[at] == quote && (at + 1 == rest.size() || rest[at + 1] != quote)) {
            rest = rest.sliced(at + 1);
            return name;
        }
        // The second of two quotes is the one that counts.
        at += rest[at] == quote ? 1 : 0;
        name += rest[at];
    }
    return {};
}

} // namespace

std::optional<PostgresScriptObject> PostgresScriptObject::parse(const QString &text, Form form)
{
    PostgresScriptObject object;
    QStringList names;
    QStringView rest(text);
    const bool mayHaveArguments = form == Form::SchemaAndName && text.endsWith(u')');
    for (bool isMore = true; isMore;) {
        names += takeName(rest, mayHaveArguments);
        isMore = rest.startsWith(u'.');
        rest = rest.sliced(isMore ? 1 : 0);
    }
    if (mayHaveArguments && rest.startsWith(u'(')) {
        object.arguments = rest.sliced(1).chopped(1).toString();
        rest = {};
    }
    const qsizetype least = form == Form::SchemaNameAndMember ? 2 : 1;
    const qsizetype most = form == Form::Name ? 1 : least + 1;
    if (!rest.isEmpty() || names.contains(QString()) || names.size() < least || names.size() > most)
        return std::nullopt;
    if (form == Form::SchemaNameAndMember)
        object.member = names.takeLast();
    object.name = names.takeLast();
    if (!names.isEmpty())
        object.schema = names.takeLast();
    return object;
}
