// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresPasswordFile.h"

#include "driver/PostgresDatabaseConnectionDetails.h"
#include "support/PrintQt.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

class PostgresPasswordFileTest : public testing::Test
{
protected:
    PostgresPasswordFileTest()
    {
        for (const char *const name : {"PGPASSWORD", "PGPASSFILE", "PGSERVICE", "PGDATABASE"})
            m_environment.set(name, {});
        m_environment.set("PGUSER", "envuser");
        m_environment.set("HOME", m_folder.path().toLocal8Bit());
    }
    QString write(const QString &name, const QByteArray &lines) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        file.write(lines);
        return file.fileName();
    }

    QTemporaryDir m_folder;
    TestEnvironment m_environment;
};

TEST_F(PostgresPasswordFileTest, findsTheFirstLineThatMatches)
{
    const PostgresPasswordFile::Login login{.host = QStringLiteral("db1"),
                                            .port = 5432,
                                            .database = QStringLiteral("shop"),
                                            .user = QStringLiteral("dba")};
    struct Case
    {
        const char *lines;
        /// Null for none.
        const char *password;
    };
    for (const auto &[lines, password] : std::initializer_list<Case>{
             {"db1:5432:shop:dba:pw\n", "pw"},
             {"db1:5432:shop:dba:pw", "pw"},
             {"db1:5432:shop:dba:pw\r\n", "pw"},
             {"*:*:*:*:any\ndb1:5432:shop:dba:late\n", "any"},
             {"db1:5433:shop:dba:no\ndb2:*:*:*:no\n*:5432:*:dba:yes\n", "yes"},
             {"#*:*:*:*:no\n\n*:*:*:*:yes\n", "yes"},
             {" db1:5432:shop:dba:no\n", nullptr},
             {"db1:5432:shop:dba:a:b #c \n", "a:b #c "},
             {"db1:5432:shop:dba:a\\:b\\\\c\\\n", "a:b\\c\\"},
             {"d\\b1:5432:shop:dba:pw\n", "pw"},
             {"db:5432:shop:dba:no\ndb11:5432:shop:dba:no\n", nullptr},
             {"db*:5432:shop:dba:no\n\\*:5432:shop:dba:no\n", nullptr},
             {"db1:5432:shop:dba\ndb1\n:\n\\", nullptr},
             {"DB1:5432:shop:dba:no\n", nullptr},
             {"", nullptr},
         }) {
        const PostgresPasswordFile file(write(QStringLiteral("pgpass"), lines));
        EXPECT_EQ(file.passwordFor(login), QString::fromUtf8(password)) << lines;
    }
    const PostgresPasswordFile escaped(
        write(QStringLiteral("pgpass"), "\\:\\:1:5432:a\\\\b\\:c:größe:schlüssel\n"));
    EXPECT_EQ(escaped.passwordFor({.host = QStringLiteral("::1"),
                                   .port = 5432,
                                   .database = QStringLiteral("a\\b:c"),
                                   .user = QStringLiteral("größe")}),
              QStringLiteral("schlüssel"));
}

TEST_F(PostgresPasswordFileTest, isLeftAloneWhenOthersMayRead)
{
    const PostgresPasswordFile file(write(QStringLiteral("pgpass"), "*:*:*:*:pw\n"));
    EXPECT_EQ(file.passwordFor({}), QStringLiteral("pw"));
    EXPECT_FALSE(file.isOpenToOthers());
    for (const auto others : {QFile::ReadGroup, QFile::WriteOther}) {
        QFile(m_folder.filePath(QStringLiteral("pgpass")))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner | others);
        EXPECT_TRUE(file.isOpenToOthers());
        EXPECT_TRUE(file.passwordFor({}).isNull());
    }
    EXPECT_TRUE(PostgresPasswordFile(m_folder.path()).passwordFor({}).isNull());
    EXPECT_TRUE(PostgresPasswordFile(QStringLiteral("/nowhere")).passwordFor({}).isNull());
}

TEST_F(PostgresPasswordFileTest, isFoundAsLibpqFindsIt)
{
    using Details = PostgresDatabaseConnectionDetails;
    const auto find = [](const Details &details, const QString &database = {}) {
        return PostgresPasswordFile::find(details, database).password;
    };
    write(QStringLiteral(".pgpass"), "db1:5432:envuser:envuser:own\ndb1:5432:shop:*:shop's\n");
    Details details;
    details.setHost(QStringLiteral("db1"));
    EXPECT_EQ(find(details), QStringLiteral("own"));
    EXPECT_EQ(find(details, QStringLiteral("shop")), QStringLiteral("shop's"));
    details.setUsername(QStringLiteral("dba"));
    EXPECT_TRUE(find(details).isNull());
    m_environment.set("PGDATABASE", "shop");
    EXPECT_EQ(find(details), QStringLiteral("shop's"));

    const QString other = write(QStringLiteral("other"), "db1:5432:*:dba:other\n");
    m_environment.set("PGPASSFILE", other.toLocal8Bit());
    EXPECT_EQ(find(details), QStringLiteral("other"));
    details.setConnectionParameters(
        {{QStringLiteral("passfile"), write(QStringLiteral("own"), "*:*:*:*:own\n")}});
    EXPECT_EQ(find(details), QStringLiteral("own"));

    m_environment.set("PGPASSWORD", "given");
    EXPECT_TRUE(find(details).isNull());
    m_environment.set("PGPASSWORD", {});
    details.setPassword(QStringLiteral("given"));
    EXPECT_TRUE(find(details).isNull());
}

} // namespace
