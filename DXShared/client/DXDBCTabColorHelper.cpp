// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXDBCTabColorHelper.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <array>

namespace
{

constexpr auto production = "#C62828";
// Told apart by eye, in light and dark, and none of them red.
constexpr std::array others{"#2563EB", "#1B7F3B", "#9A5B00", "#7C3AED",
                            "#0E7490", "#A21CAF", "#4D7C0F", "#475569"};

} // namespace

DXDBCTabColorHelper &DXDBCTabColorHelper::sharedInstance()
{
    static DXDBCTabColorHelper instance;
    return instance;
}

QString DXDBCTabColorHelper::colorForAlias(const QString &alias)
{
    if (alias.isEmpty())
        return {};
    static const QRegularExpression productionWord(
        QStringLiteral("\\b(prod|production|live)\\b|(^|[_-])(prod|live)([_-]|$)"),
        QRegularExpression::CaseInsensitiveOption);
    if (productionWord.match(alias).hasMatch())
        return QLatin1String(production);
    // Qt's own hash differs from run to run.
    const QByteArray hash =
        QCryptographicHash::hash(alias.toCaseFolded().toUtf8(), QCryptographicHash::Md5);
    return QLatin1String(others[static_cast<unsigned char>(hash.front()) % others.size()]);
}

void DXDBCTabColorHelper::setColorFromAliasTemporaryForId(const QString &alias,
                                                          const QString &connectionId)
{
    const std::lock_guard lock(m_mutex);
    m_colors.insert(connectionId, colorForAlias(alias));
}

void DXDBCTabColorHelper::setColorForId(const QString &color, const QString &connectionId)
{
    const std::lock_guard lock(m_mutex);
    if (color.isEmpty())
        m_chosenColors.remove(connectionId);
    else
        m_chosenColors.insert(connectionId, color);
}

QStringList DXDBCTabColorHelper::colors()
{
    QStringList colors{QLatin1String(production)};
    for (const char *const color : others)
        colors.append(QLatin1String(color));
    return colors;
}

QString DXDBCTabColorHelper::colorForId(const QString &connectionId) const
{
    const std::lock_guard lock(m_mutex);
    return m_chosenColors.value(connectionId, m_colors.value(connectionId));
}
