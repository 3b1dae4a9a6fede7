// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "support/Background.h"
#include "support/PostgresCluster.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QVersionNumber>

#include <gmock/gmock.h>

namespace
{

QString contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QDir caseFolder()
{
    return QDir(QStringLiteral(DX_TEST_SQL_FOLDER "/queries"));
}

QStringList titles(const QDir &folder, const QString &ending)
{
    QStringList titles = folder.entryList({u'*' + ending}, QDir::Files, QDir::Name);
    for (QString &title : titles)
        title.chop(ending.size());
    return titles;
}

// Statements for users to edit; they are not run as they are.
bool isTemplate(const QString &title)
{
    return title.startsWith(QLatin1String("New")) || title == QLatin1String("DropDatabase");
}

int serverMajor()
{
    static const int major =
        PostgresCluster::shared().psql(QStringLiteral("SHOW server_version_num")).toInt() / 10'000;
    return major;
}

struct Case
{
    QString name;
    QString query;
    QStringList rows;
};

QString filled(QString query, const QString &placeholders)
{
    const QStringList parts = placeholders.split(QStringLiteral(" | "), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const qsizetype equals = part.indexOf(u'=');
        const QString name = u'{' + part.left(equals) + u'}';
        EXPECT_TRUE(query.contains(name)) << name.toStdString();
        query.replace(name, part.mid(equals + 1));
    }
    return query;
}

// The row without its condition; nothing when this server does not give it.
std::optional<QString> expectedRow(const QString &line)
{
    static const QRegularExpression form(QStringLiteral("^\\[(\\d*)\\.\\.(\\d*)\\] (.*)$"));
    const auto match = form.match(line);
    if (!match.hasMatch())
        return line;
    const int first = match.captured(1).toInt();
    const int last = match.captured(2).isEmpty() ? serverMajor() : match.captured(2).toInt();
    if (serverMajor() < first || serverMajor() > last)
        return std::nullopt;
    return match.captured(3);
}

QList<Case> casesOf(const QString &title)
{
    const QString query = PostgresSystemDatabaseQueries::queryByTitle(title);
    QList<Case> cases;
    const QString text = contentOf(caseFolder().filePath(title + QStringLiteral(".test")));
    const QStringList lines = text.trimmed().split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("===")))
            cases.append({.name = title + line.mid(3),
                          .query = filled(query, line.mid(3).trimmed()),
                          .rows = {}});
        else if (const auto row = expectedRow(line))
            cases.last().rows.append(*row);
    }
    return cases;
}

// Where OIDs begin that differ from server to server (transam.h).
constexpr qint64 FirstNormalOid = 16384;

QString cellText(const DXValue &value)
{
    if (value.isNull())
        return QStringLiteral("(null)");
    if (value.isInteger() && value.toInteger() >= FirstNormalOid)
        return QStringLiteral("(oid)");
    const QString text = value.toText();
    if (text.startsWith(QLatin1String("PostgreSQL ")))
        return QStringLiteral("(version)");
    return QString(text).replace(u'\n', QLatin1String("\\n")).replace(u'\t', QLatin1String("\\t"));
}

struct Answer
{
    QStringList columns;
    QStringList rows;
    DXError error;
};

Answer ask(PostgresDatabaseClient &client, const QString &query)
{
    Answer answer;
    const auto collect = [&answer](const DatabaseResultSet &row) {
        answer.columns = row.columnNames();
        QStringList cells;
        for (quint32 column = 0; column < row.columnCount(); ++column)
            cells.append(cellText(row.objectForColumnIndex(column)));
        answer.rows.append(cells.join(u'|'));
    };
    inBackground([&] { PostgresCatalogueReader::read(client, query, collect, &answer.error); });
    return answer;
}

// The columns that the comment at the beginning of a query announces.
QStringList announcedColumns(const QString &query)
{
    static const QRegularExpression form(QStringLiteral("\\A-- Columns: ([\\w, ]+)\\n"));
    return form.match(query).captured(1).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

std::unique_ptr<PostgresDatabaseClient> connectedTo(const QString &database, const QString &user)
{
    auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(PostgresCluster::shared().socketFolder());
    details->setPort(PostgresCluster::shared().port());
    details->setUsername(user);
    details->setDatabase(database);
    auto client = std::make_unique<PostgresDatabaseClient>(details);
    DXError error;
    EXPECT_TRUE(inBackground([&] { return client->connect(&error); }))
        << error.description().toStdString();
    return client;
}

class NamedQueries : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const PostgresCluster &cluster = PostgresCluster::shared();
        RecordProperty("server", serverMajor());
        cluster.createDatabase(QStringLiteral("queries"));
        cluster.psql(contentOf(caseFolder().filePath(QStringLiteral("objects.sql"))),
                     QStringLiteral("queries"));
        cluster.psql(QStringLiteral("CREATE DATABASE trapped TEMPLATE queries;"
                                    "ALTER DATABASE trapped "
                                    "SET search_path = \"$user\", public, evil"));
        cluster.psql(contentOf(caseFolder().filePath(QStringLiteral("traps.sql"))),
                     QStringLiteral("trapped"));
    }
};

TEST_F(NamedQueries, haveCasesForEachTitle)
{
    QStringList expected = titles(QDir(QStringLiteral(DX_QUERY_FOLDER)), QStringLiteral(".sql"));
    expected.removeIf(isTemplate);
    EXPECT_EQ(titles(caseFolder(), QStringLiteral(".test")), expected);
}

TEST_F(NamedQueries, answerWhatTheirCasesSay)
{
    const auto client = connectedTo(QStringLiteral("queries"), PostgresCluster::superuser());
    const QStringList files = titles(caseFolder(), QStringLiteral(".test"));
    for (const QString &title : files) {
        const QList<Case> cases = casesOf(title);
        for (Case entry : cases) {
            Answer answer = ask(*client, entry.query);
            EXPECT_FALSE(answer.error)
                << qPrintable(entry.name) << ": " << qPrintable(answer.error.description());
            if (!entry.query.contains(QLatin1String("\nORDER BY"))) {
                answer.rows.sort();
                entry.rows.sort();
            }
            EXPECT_EQ(answer.rows.join(u'\n').toStdString(), entry.rows.join(u'\n').toStdString())
                << qPrintable(entry.name);
            EXPECT_TRUE(answer.rows.isEmpty() || answer.columns == announcedColumns(entry.query))
                << qPrintable(title);
        }
    }
}

// Operators that stand nearer to an operand's types than those of the system would be taken.
TEST_F(NamedQueries, fallForNoOperatorOfAnotherSchema)
{
    const auto client = connectedTo(QStringLiteral("trapped"), PostgresCluster::superuser());
    EXPECT_THAT(ask(*client, QStringLiteral("SELECT 'a'::name || 'b'::text"))
                    .error.description()
                    .toStdString(),
                testing::HasSubstr("trapped"));
    const QStringList files = titles(caseFolder(), QStringLiteral(".test"));
    for (const QString &title : files) {
        const QList<Case> cases = casesOf(title);
        for (const Case &entry : cases)
            EXPECT_EQ(ask(*client, entry.query).error.description(), QString())
                << qPrintable(entry.name);
    }
}

// Those who may do nothing see what there is all the same; only a name that the server itself
// looks up is refused to them.
TEST_F(NamedQueries, runForAUserWithoutRights)
{
    const auto client = connectedTo(QStringLiteral("queries"), QStringLiteral("nobody"));
    const QStringList files = titles(caseFolder(), QStringLiteral(".test"));
    for (const QString &title : files) {
        const QList<Case> cases = casesOf(title);
        for (const Case &entry : cases) {
            const Answer answer = ask(*client, entry.query);
            if (title == QLatin1String("List_PrimaryKeysForTable")) {
                EXPECT_THAT(answer.error.description().toStdString(),
                            testing::HasSubstr("permission denied for schema"));
            } else {
                EXPECT_EQ(answer.error.description(), QString()) << qPrintable(entry.name);
                EXPECT_EQ(answer.rows.size(), entry.rows.size()) << qPrintable(entry.name);
            }
        }
    }
}

TEST_F(NamedQueries, includeTemplatesThatRun)
{
    const auto client = connectedTo(QStringLiteral("queries"), PostgresCluster::superuser());
    for (const char *title : {"NewTable", "NewView", "NewFunction", "NewStoredProcedure"}) {
        DXError error;
        inBackground([&] {
            client->beginTransaction(&error);
            client->executeNonQuery(
                PostgresSystemDatabaseQueries::queryByTitle(QLatin1String(title)), &error);
            client->rollbackTransaction(&error);
        });
        EXPECT_FALSE(error) << title << ": " << qPrintable(error.description());
    }
}

} // namespace
