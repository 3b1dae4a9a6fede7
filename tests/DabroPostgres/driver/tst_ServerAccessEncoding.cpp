// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/driver/ServerAccess.h"
#include "client/DatabaseResultSet.h"
#include "support/Background.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

using namespace ServerAccess;

namespace
{

struct EncodingCase
{
    QString database;
    QString environment;
};

// Every encoding of a database, under every encoding that the user's shell may ask libpq for.
class ServerAccessEncoding : public testing::TestWithParam<EncodingCase>
{
protected:
    static void SetUpTestSuite()
    {
        for (const QString &encoding :
             {QStringLiteral("UTF8"), QStringLiteral("LATIN1"), QStringLiteral("SQL_ASCII")})
            PostgresCluster::shared().createDatabase(nameOf(encoding), encoding);
    }
    static void TearDownTestSuite()
    {
        for (const QString &encoding :
             {QStringLiteral("UTF8"), QStringLiteral("LATIN1"), QStringLiteral("SQL_ASCII")})
            PostgresCluster::shared().psql(QStringLiteral("DROP DATABASE ") + nameOf(encoding));
    }
    static QString nameOf(const QString &encoding)
    {
        return QStringLiteral("encoded_") + encoding.toLower();
    }
};

TEST_P(ServerAccessEncoding, carriesTextAsUtf8)
{
    const EnvironmentVariable environment("PGCLIENTENCODING", GetParam().environment);
    const auto client = connected(record(PostgresCluster::shared(), nameOf(GetParam().database)));
    const auto text = QStringLiteral("Grüße, Ærø");
    const auto expectTextIntact = [&] {
        EXPECT_EQ(scalar(*client, QStringLiteral("SHOW client_encoding")),
                  GetParam().database == u"SQL_ASCII" ? u"SQL_ASCII" : u"UTF8");
        EXPECT_EQ(scalar(*client, QStringLiteral("SELECT '%1'").arg(text)), text);
        EXPECT_EQ(scalar(*client, QStringLiteral("SELECT octet_length('ü')")),
                  GetParam().database == u"LATIN1" ? u"1" : u"2");
        EXPECT_TRUE(errorOf(*client, QStringLiteral("SELECT \"Ærø\""))
                        .description()
                        .contains(QStringLiteral("column \"Ærø\" does not exist")));
        const QStringList names = inBackground([&client] {
            DXError error;
            const auto rows = client->executeQuery(QStringLiteral("SELECT 1 AS \"Größe\""), &error);
            return rows ? rows->columnNames() : QStringList();
        });
        EXPECT_EQ(names, QStringList(QStringLiteral("Größe")));
    };
    expectTextIntact();
    DXError error;
    inBackground([&] { return client->resetSession(&error); });
    EXPECT_FALSE(error) << error.description().toStdString();
    expectTextIntact();
}

INSTANTIATE_TEST_SUITE_P(
    , ServerAccessEncoding,
    testing::Values(EncodingCase{QStringLiteral("UTF8"), QStringLiteral("LATIN1")},
                    EncodingCase{QStringLiteral("UTF8"), QStringLiteral("SQL_ASCII")},
                    EncodingCase{QStringLiteral("LATIN1"), QStringLiteral("")},
                    EncodingCase{QStringLiteral("LATIN1"), QStringLiteral("LATIN1")},
                    EncodingCase{QStringLiteral("LATIN1"), QStringLiteral("SQL_ASCII")},
                    EncodingCase{QStringLiteral("SQL_ASCII"), QStringLiteral("")},
                    EncodingCase{QStringLiteral("SQL_ASCII"), QStringLiteral("LATIN1")}),
    [](const auto &each) {
        return (each.param.database + u'_' + each.param.environment).toStdString();
    });

TEST(ServerAccessBytes, thatAreNotUtf8ReadAsTheNullMarker)
{
    auto &cluster = PostgresCluster::shared();
    cluster.createDatabase(QStringLiteral("bytes"), QStringLiteral("SQL_ASCII"));
    const auto client = connected(record(cluster, QStringLiteral("bytes")));
    DXError error;
    const auto values = inBackground([&] {
        QList<DXValue> result;
        const auto rows = client->executeQuery(
            QStringLiteral("SELECT E'caf\\xe9', E'caf\\xc3\\xa9', E'\\xff'::bytea, ''"), &error);
        if (rows && rows->next(&error)) {
            for (quint32 column = 0; column < rows->columnCount(); ++column)
                result.append(rows->objectForColumnIndex(column));
        }
        return result;
    });
    ASSERT_FALSE(error) << error.description().toStdString();
    ASSERT_EQ(values.size(), 4);
    EXPECT_TRUE(values[0].isNull());
    EXPECT_EQ(values[1], DXValue(QStringLiteral("café")));
    EXPECT_EQ(values[2], DXValue(QByteArray("\\xff")));
    EXPECT_EQ(values[3], DXValue(QStringLiteral("")));

    DXQueryResult result;
    error = inBackground([&] {
        return runBatch(*client, QStringLiteral("SELECT E'caf\\xe9' UNION ALL SELECT 'ok'"),
                        result);
    });
    EXPECT_FALSE(error);
    ASSERT_EQ(result.resultSets().size(), 1);
    EXPECT_TRUE(result.resultSets().first()->value(0, 0).isNull());
    EXPECT_EQ(result.resultSets().first()->value(1, 0), DXValue(QStringLiteral("ok")));
}

} // namespace
