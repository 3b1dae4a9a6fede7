// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/secrets/DXSecurityBookmarkHelper.h"

#include <QDir>

namespace
{

// What a token of a file in the home folder begins with; every other token is an absolute path.
constexpr QLatin1String HomePrefix("~/");

QString homeFolder()
{
    const QString home = QDir::homePath();
    return home.endsWith(u'/') ? home : home + u'/';
}

} // namespace

DXSecurityBookmarkHelper &DXSecurityBookmarkHelper::sharedInstance()
{
    static DXSecurityBookmarkHelper instance;
    return instance;
}

QString DXSecurityBookmarkHelper::createSecurePath(const QString &path)
{
    if (path.isEmpty())
        return {};
    const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(path));
    const QString home = homeFolder();
    return absolute.startsWith(home) ? HomePrefix + absolute.mid(home.size()) : absolute;
}

QUrl DXSecurityBookmarkHelper::loadSecurePath(const QString &token)
{
    if (token.startsWith(HomePrefix))
        return QUrl::fromLocalFile(QDir::cleanPath(homeFolder() + token.mid(HomePrefix.size())));
    if (QDir::isAbsolutePath(token))
        return QUrl::fromLocalFile(token);
    return {};
}
