// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tree/CliTreeText.h"

#include "cli/CliText.h"

CliTreeText::CliTreeText(const Options &options)
    : m_options(options)
{ }

QString CliTreeText::text(DXDatabaseTreeEntry &entry, const Options &options)
{
    CliTreeText text(options);
    text.write(entry, 0);
    return text.m_text;
}

QString CliTreeText::errorImageName()
{
    return QStringLiteral("DatabaseTree-Error");
}

void CliTreeText::write(DXDatabaseTreeEntry &entry, int level)
{
    QString line = CliText::printable(entry.displayName());
    if (const QString details = entry.details(); !details.isEmpty())
        line += QLatin1String("  ") + CliText::printable(details);
    if (const QString image = entry.imageName(); m_options.hasKinds && !image.isEmpty())
        line += QStringLiteral("  [%1]").arg(image.section(u'-', 1));
    writeLine(line, level);
    if (m_options.hasMenus)
        writeMenu(entry.menu().items(), level + 1);
    const auto children = entry.childEntries();
    if (!children || level >= m_options.depth)
        return;
    for (const auto &child : *children)
        write(*child, level + 1);
}

void CliTreeText::writeMenu(const std::vector<DXMenu::Item> &items, int level)
{
    for (const DXMenu::Item &item : items) {
        writeLine(QLatin1String("> ") + (item.isSeparator() ? QStringLiteral("--") : item.title),
                  level);
        writeMenu(item.submenu, level + 1);
    }
}

void CliTreeText::writeLine(const QString &line, int level)
{
    m_text += QString(qsizetype(level) * 2, u' ') + line + u'\n';
}
