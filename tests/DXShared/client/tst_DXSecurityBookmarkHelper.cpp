// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/secrets/DXSecurityBookmarkHelper.h"

#include "support/PrintQt.h"

#include <QDir>

#include <gtest/gtest.h>

namespace
{

TEST(DXSecurityBookmarkHelper, givesBackFilesWithOddNames)
{
    auto &helper = DXSecurityBookmarkHelper::sharedInstance();
    for (const QString &name : {
             QStringLiteral("key.pem"),
             QStringLiteral(" key with blanks "),
             QStringLiteral("100%41#?x=1&y;z"),
             QStringLiteral("file:quoted\"'\\name"),
             QStringLiteral("line\nfeed"),
             QStringLiteral("ключ-鍵-🔑"),
             QStringLiteral("~/~"),
         }) {
        for (const QString &folder : {QDir::homePath(), QStringLiteral("/etc/ssl")}) {
            const QString path = folder + u'/' + name;
            const QUrl location = helper.loadSecurePath(helper.createSecurePath(path));
            EXPECT_EQ(location.toLocalFile(), path);
            EXPECT_EQ(helper.loadSecurePath(path).toLocalFile(), path);
        }
    }
    EXPECT_EQ(
        helper.loadSecurePath(helper.createSecurePath(QStringLiteral("a/../b"))).toLocalFile(),
        QDir::current().absoluteFilePath(QStringLiteral("b")));
}

TEST(DXSecurityBookmarkHelper, followsAMovedHome)
{
    auto &helper = DXSecurityBookmarkHelper::sharedInstance();
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", "/home/old");
    const QString inside = helper.createSecurePath(QStringLiteral("/home/old/.postgresql/a.key"));
    const QString beside = helper.createSecurePath(QStringLiteral("/home/older/a.key"));
    qputenv("HOME", "/home/new");
    EXPECT_EQ(helper.loadSecurePath(inside).toLocalFile(),
              QStringLiteral("/home/new/.postgresql/a.key"));
    EXPECT_EQ(helper.loadSecurePath(beside).toLocalFile(), QStringLiteral("/home/older/a.key"));
    qputenv("HOME", home);
}

TEST(DXSecurityBookmarkHelper, hasNoLocationForWhatIsNoToken)
{
    auto &helper = DXSecurityBookmarkHelper::sharedInstance();
    EXPECT_TRUE(helper.createSecurePath(QString()).isNull());
    for (const QString &token : {QString(), QStringLiteral(""), QStringLiteral("relative/file"),
                                 QStringLiteral("https://example.invalid/key")})
        EXPECT_TRUE(helper.loadSecurePath(token).isEmpty()) << token.toStdString();
}

} // namespace
