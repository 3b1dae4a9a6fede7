// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "layers/IncludeRules.h"

#include <QRegularExpression>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// A folder below a room's folder is that folder's own business.
QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/')).section(u'/', 0, 1);
}

} // namespace

IncludeRules::IncludeRules(Init init)
    : m_init(std::move(init))
{
    const QStringList lines = m_init.table.split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const qsizetype colon = line.indexOf(u':');
        if (line.startsWith(u'#') || colon < 0)
            continue;
        const QStringList used = line.mid(colon + 1).split(u' ', Qt::SkipEmptyParts);
        m_allowed.insert(line.left(colon), QSet<QString>(used.begin(), used.end()));
    }
}

QStringList IncludeRules::faults(const QString &path, const QString &text) const
{
    static const QRegularExpression include(u"^\\s*#\\s*include\\b"_s);
    if (!m_allowed.contains(folderOf(path)))
        return {path + u": the table does not know this folder"_s};
    QStringList found;
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (!include.match(lines[i]).hasMatch())
            continue;
        const QString why = fault(path, lines[i]);
        if (!why.isEmpty())
            found += u"%1:%2: %3"_s.arg(path).arg(i + 1).arg(why);
    }
    return found;
}

QString IncludeRules::fault(const QString &path, const QString &line) const
{
    static const QRegularExpression name(u"include\\s*([<\"])([^>\"]+)[>\"]"_s);
    const QRegularExpressionMatch match = name.match(line);
    if (!match.hasMatch())
        return u"not a plain name: "_s + line.trimmed();
    const QString included = match.captured(2);
    if (included.contains(".."_L1))
        return included + u" climbs out of its folder"_s;
    return match.captured(1) == u'<' ? faultOfLibraryHeader(folderOf(path), included)
                                     : faultOfOwnHeader(folderOf(path), included);
}

QString IncludeRules::faultOfOwnHeader(const QString &folder, const QString &name) const
{
    if (name.endsWith(".moc"_L1))
        return {};
    if (name.startsWith("ui_"_L1))
        return mayUse(folder, u"@widgets"_s) ? QString() : name + u" shows widgets"_s;
    const QStringList files = filesNamed(name);
    if (files.isEmpty())
        return name + u" names no file from the root of a room"_s;
    for (const QString &file : files) {
        if (mayUse(folder, folderOf(file)))
            return {};
    }
    return u"%1 may not include %2"_s.arg(folder, files.join(u" or "_s));
}

QString IncludeRules::faultOfLibraryHeader(const QString &folder, const QString &name) const
{
    static const QRegularExpression libpq(u"^(libpq|pg_config|postgres_ext|pqcomm)"_s);
    if (!filesNamed(name).isEmpty())
        return name + u" is ours and belongs in quotes"_s;
    if (libpq.match(name).hasMatch() && !mayUse(folder, u"@libpq"_s))
        return u"%1 may not use libpq: %2"_s.arg(folder, name);
    if (m_init.isWidgetHeader(name) && !mayUse(folder, u"@widgets"_s))
        return u"%1 may not use Qt Widgets: %2"_s.arg(folder, name);
    return {};
}

QStringList IncludeRules::filesNamed(const QString &name) const
{
    QStringList found;
    for (const QString &room : {u"DXShared/"_s, u"DabroPostgres/"_s, u"app/"_s}) {
        if (m_init.exists(room + name))
            found += room + name;
    }
    return found;
}

bool IncludeRules::mayUse(const QString &folder, const QString &used) const
{
    return folder == used || m_allowed.value(folder).contains(used);
}
