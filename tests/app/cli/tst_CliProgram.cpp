// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cli/CliRun.h"
#include "support/DXWait.h"
#include "support/PostgresCluster.h"
#include "support/Program.h"
#include "support/TestCertificates.h"
#include "support/TestSshServer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

constexpr auto countActive = "SELECT count(*) FROM pg_stat_activity WHERE query LIKE '%%1%' "
                             "AND pid <> pg_backend_pid() AND state = 'active'";

class CliProgramTest : public Test
{
protected:
    static PostgresCluster &cluster() { return PostgresCluster::shared(); }
    static CliRun::Init query(const QStringList &arguments)
    {
        return {.arguments = QStringList(u"query"_qs) + arguments,
                .environment = CliRun::environmentFor(cluster())};
    }
    static bool isActive(const QString &mark)
    {
        return cluster().psql(QString::fromLatin1(countActive).arg(mark)).trimmed() == u"1"_qs;
    }
    QString write(const QString &name, const QByteArray &contents) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        return file.fileName();
    }

    QTemporaryDir m_folder;
};

TEST_F(CliProgramTest, PrintsEachStatementsGridAndMessage)
{
    CliRun::Init init = query({});
    init.input =
        "\xef\xbb\xbf-- a comment\nSELECT 1 AS id, 'é' AS name; SELECT 2 AS two WHERE false;\n"
        "CREATE TEMP TABLE t AS SELECT 1; DO $$BEGIN RAISE WARNING 'w;\x1b[0m'; END$$";
    CliRun run(init);
    EXPECT_EQ(run.wait(), 0);
    EXPECT_THAT(run.output().toStdString(),
                StartsWith(" id | name\n----+------\n  1 | é\n"
                           "Command completed successfully. (1 result).\n"
                           "\n two\n-----\nCommand completed successfully. (0 rows affected).\n"));
    EXPECT_EQ(run.errors(), "WARNING:  w;\\x1B[0m\n");
}

TEST_F(CliProgramTest, PrintsScriptsAndCompletions)
{
    cluster().createDatabase(u"scripted"_qs);
    cluster().psql(u"CREATE TABLE items (id int PRIMARY KEY, \"Name\" text);"
                   "CREATE SCHEMA s; CREATE TABLE s.\"o'y\" ();"
                   "CREATE TABLE s.t (a int); CREATE INDEX \"Two Words\" ON s.t (a);"
                   "CREATE TYPE s.e AS (a int, b text)"_qs,
                   u"scripted"_qs);
    struct Case
    {
        QStringList arguments;
        int status;
        std::string output;
        std::string errors;
    };
    const QList<Case> cases{
        {{u"script"_qs, u"--as"_qs, u"drop"_qs, u"table"_qs, u"items"_qs},
         0,
         "DROP TABLE public.items;\n",
         ""},
        {{u"script"_qs, u"index"_qs, u"s.Two Words"_qs}, 0, "DROP INDEX s.\"Two Words\"\n", ""},
        {{u"script"_qs, u"type"_qs, u"s.e"_qs},
         0,
         "-- alter\nCREATE TYPE s.e AS\r\n(\r\n\ta integer,\r\n\tb text\r\n);\n\n"
         "-- drop\nDROP TYPE s.e\n",
         ""},
        {{u"script"_qs, u"table"_qs, u"Items"_qs},
         2,
         "",
         "There is no table \"Items\" in the schema \"public\", but \"items\".\n"},
        {{u"script"_qs, u"row"_qs, u"items"_qs, u"id=1"_qs, u"Name=a=b"_qs},
         0,
         "DELETE FROM items WHERE id = '1' AND \"Name\" = 'a=b';\n",
         ""},
        {{u"script"_qs, u"cat"_qs, u"x"_qs},
         2,
         "",
         "There is no kind of object \"cat\": use table,"},
        {{u"script"_qs, u"--as"_qs, u"eat"_qs, u"view"_qs, u"x"_qs}, 2, "", "no script \"eat\""},
        {{u"script"_qs, u"table"_qs, u"a.b.c"_qs}, 2, "", "write [SCHEMA.]TABLE"},
        {{u"script"_qs, u"--as"_qs, u"create"_qs, u"table"_qs, u"s.o'y"_qs},
         1,
         "/*\r\n* Error loading table definition.\r\n* ERROR:  syntax error",
         "ERROR:  syntax error"},
        {{u"complete"_qs, u"N"_qs}, 0, "Name\tcolumn\tpublic.items\ttext\n", ""},
        {{u"complete"_qs, u"public.IT"_qs}, 0, "items\ttable\tpublic\t\n", ""},
        {{u"complete"_qs, u"nothing"_qs}, 0, "", ""}};
    for (const Case &each : cases) {
        CliRun::Init init{.arguments = each.arguments,
                          .environment = CliRun::environmentFor(cluster())};
        init.environment.insert(u"PGDATABASE"_qs, u"scripted"_qs);
        CliRun run(init);
        EXPECT_EQ(run.wait(), each.status);
        const std::string output = run.output().toStdString();
        EXPECT_THAT(output,
                    each.status == 0 ? Matcher<std::string>(each.output) : StartsWith(each.output));
        EXPECT_THAT(run.errors().toStdString(), HasSubstr(each.errors));
    }
}

TEST_F(CliProgramTest, KeepsMessagesAwayFromData)
{
    const QString statements =
        u"SELECT 1 AS id, NULL AS n, true AS yes, 0.50 AS d, 1.5::float AS f"_qs;
    const QList<std::tuple<QString, QByteArray>> formats{
        {u"csv"_qs, "id,n,yes,d,f\n1,,True,0.50,1.5\n"},
        {u"tsv"_qs, "id\tn\tyes\td\tf\n1\t\\N\tTrue\t0.50\t1.5\n"},
        {u"jsonl"_qs, "{\"id\":1,\"n\":null,\"yes\":true,\"d\":0.50,\"f\":\"1.5\"}\n"}};
    for (const auto &[format, output] : formats) {
        CliRun run(query({u"--format"_qs, format, statements}));
        EXPECT_EQ(run.wait(), 0);
        EXPECT_EQ(run.output(), output);
        EXPECT_EQ(run.errors(), "Command completed successfully. (1 result).\n");
    }
    CliRun quiet(query({u"-q"_qs, u"--format"_qs, u"csv"_qs, u"--no-header"_qs, statements}));
    EXPECT_EQ(quiet.wait(), 0);
    EXPECT_EQ(quiet.output() + quiet.errors(), "1,,True,0.50,1.5\n");
}

TEST_F(CliProgramTest, PrintsManyRowsInOrder)
{
    CliRun run(query(
        {u"--format=csv"_qs, u"--no-header"_qs, u"SELECT g FROM generate_series(1, 123456) g"_qs}));
    EXPECT_EQ(run.wait(), 0);
    QByteArray expected;
    for (int i = 1; i <= 123456; ++i)
        expected += QByteArray::number(i) + '\n';
    EXPECT_TRUE(run.output() == expected);
}

TEST_F(CliProgramTest, MarksWhatFailedAndUndoesTheBatch)
{
    const QString file =
        write(u"batch.sql"_qs, "CREATE TABLE undone (a int);\n\nSELECT '漢',\tnope\n"
                               "FROM undone;\nSELECT 'never'");
    CliRun run(query({u"-f"_qs, file}));
    EXPECT_EQ(run.wait(), 1);
    EXPECT_EQ(run.output(), "Command completed successfully.\n");
    EXPECT_EQ(run.errors(), "ERROR:  column \"nope\" does not exist\n"
                            "Line 3: SELECT '漢',    nope\n"
                            "                        ^^^^\n"
                            "Nothing of this run was kept: the server ran it as one "
                            "transaction, and rolled that back.\n");
    EXPECT_EQ(cluster().psql(u"SELECT to_regclass('undone') IS NULL"_qs).trimmed(), u"t"_qs);
}

TEST_F(CliProgramTest, EndsWithAStatusThatTellsWhatFailed)
{
    const QString notUtf8 = write(u"latin1.sql"_qs, "SELECT '\xe9'");
    const QString none = m_folder.filePath(u"none.sql"_qs);
    const QList<std::tuple<QStringList, int, const char *>> cases{
        {{u"query"_qs, u"--nonsense"_qs}, 2, "nonsense"},
        {{u"query"_qs, u"-f"_qs, none}, 2, "none.sql cannot be read"},
        {{u"query"_qs, u"-f"_qs, notUtf8}, 2, "is not text in UTF-8"},
        {{u"query"_qs, u"--url"_qs, u"port=x"_qs, u"SELECT 1"_qs}, 2, "port"},
        {{u"ping"_qs, u"-h"_qs, u"no-such-host.invalid"_qs}, 3, "no-such-host.invalid"},
        {{u"ping"_qs, u"-h"_qs, u"127.0.0.1"_qs, u"-p"_qs, u"1"_qs}, 3, "refused"},
        {{u"ping"_qs, u"-d"_qs, u"no such database"_qs}, 3, "\"no such database\" does not exist"},
        {{u"ping"_qs, u"otherdb://h"_qs}, 4, "no driver for \"otherdb\""},
        {{u"ping"_qs, u"--driver"_qs, u"other"_qs}, 4, "no driver \"other\""}};
    for (const auto &[arguments, status, part] : cases) {
        CliRun run({.arguments = arguments, .environment = CliRun::environmentFor(cluster())});
        EXPECT_EQ(run.wait(), status) << arguments.join(u' ').toStdString();
        EXPECT_EQ(run.output(), "");
        EXPECT_THAT(run.errors().toStdString(), HasSubstr(part));
    }
}

TEST_F(CliProgramTest, SaysWhyNoDriverCouldBeLoaded)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"bin"_qs));
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"lib/drivers"_qs));
    const QString program = m_folder.filePath(u"bin/dabro-cli"_qs);
    ASSERT_TRUE(QFile::copy(CliRun::defaultProgram(), program));
    write(u"lib/drivers/broken.so"_qs, "no library");
    CliRun run({.arguments = {u"ping"_qs}, .program = program});
    EXPECT_EQ(run.wait(), 4);
    EXPECT_THAT(run.errors().toStdString(),
                AllOf(HasSubstr("No driver could be loaded."),
                      HasSubstr("broken.so: It is not a shared library.")));
}

TEST_F(CliProgramTest, RunsFromWhereverItIsInstalled)
{
    for (const QString &component : {u"dabro-cli"_qs, u"dabro-runtime"_qs}) {
        const Program installation(
            {.program = QStringLiteral(DX_TEST_CMAKE),
             .arguments = {u"--install"_qs, QStringLiteral(DX_TEST_BUILD_FOLDER), u"--prefix"_qs,
                           m_folder.filePath(u"first"_qs), u"--component"_qs, component}});
        ASSERT_TRUE(installation.succeeded()) << installation.failure().toStdString();
    }
    const QString prefix = m_folder.filePath(u"second place"_qs);
    ASSERT_TRUE(QDir().rename(m_folder.filePath(u"first"_qs), prefix));
    EXPECT_TRUE(QFile::exists(prefix + u"/share/man/man1/dabro-cli.1"_qs));
    CliRun run({.arguments = {u"ping"_qs},
                .environment = CliRun::environmentFor(cluster()),
                .program = prefix + u"/bin/dabro-cli"_qs});
    EXPECT_EQ(run.wait(), 0) << run.errors().toStdString();
    EXPECT_THAT(run.output().toStdString(), HasSubstr(prefix.toStdString() + "/lib/"));
}

TEST_F(CliProgramTest, PingTellsHowItIsConnected)
{
    CliRun run({.arguments = {u"ping"_qs}, .environment = CliRun::environmentFor(cluster())});
    EXPECT_EQ(run.wait(), 0);
    const QString version = cluster().psql(u"SHOW server_version"_qs).section(u' ', 0, 0).trimmed();
    EXPECT_THAT(run.output().toStdString(),
                AllOf(HasSubstr("Unix socket " + cluster().socketFolder().toStdString()),
                      HasSubstr("PostgreSQL " + version.toStdString() + '\n'),
                      HasSubstr("DabroPostgres.so)")));
    EXPECT_EQ(run.errors(), "");
}

TEST_F(CliProgramTest, PingTellsOfTlsAndTunnels)
{
    const TestCertificates certificates;
    const TestSshServer ssh;
    PostgresCluster::Options options{.tcp = true};
    options.tls = PostgresCluster::Tls{.certificate = certificates.server().certificate,
                                       .key = certificates.server().key};
    const PostgresCluster encrypted(options);
    const QStringList ping{u"ping"_qs,
                           u"-p"_qs,
                           QString::number(encrypted.port()),
                           u"-U"_qs,
                           PostgresCluster::superuser(),
                           u"-d"_qs,
                           u"postgres"_qs};
    CliRun direct(
        {.arguments = ping
                      + QStringList{u"-h"_qs, u"localhost"_qs, u"--sslmode"_qs, u"verify-full"_qs,
                                    u"--sslrootcert"_qs, certificates.authority()}});
    EXPECT_EQ(direct.wait(), 0) << direct.errors().toStdString();
    EXPECT_THAT(direct.output().toStdString(), HasSubstr("TLSv1."));

    CliRun untrusted(
        {.arguments = ping
                      + QStringList{u"-h"_qs, u"localhost"_qs, u"--sslmode"_qs, u"verify-full"_qs,
                                    u"--sslrootcert"_qs, certificates.foreignAuthority()}});
    EXPECT_EQ(untrusted.wait(), 3);
    EXPECT_THAT(untrusted.errors().toStdString(), HasSubstr("certificate verify failed"));

    const QStringList tunnel{u"-h"_qs,
                             u"127.0.0.1"_qs,
                             u"--ssh"_qs,
                             ssh.username() + u"@127.0.0.1:"_qs + QString::number(ssh.port()),
                             u"--ssh-config"_qs,
                             ssh.configurationFile(),
                             u"--ssh-identity"_qs};
    CliRun tunnelled({.arguments = ping + tunnel + QStringList(ssh.keyFile())});
    EXPECT_EQ(tunnelled.wait(), 0) << tunnelled.errors().toStdString();
    EXPECT_THAT(tunnelled.output().toStdString(), HasSubstr("through an SSH tunnel to 127.0.0.1"));

    CliRun stranger({.arguments = ping + tunnel + QStringList(ssh.strangerKeyFile())});
    EXPECT_EQ(stranger.wait(), 3);
    EXPECT_THAT(stranger.errors().toStdString(), HasSubstr("Permission denied"));
}

TEST_F(CliProgramTest, FirstInterruptCancelsWhatRuns)
{
    for (const auto &[signal, status] : {std::pair(SIGINT, 130), std::pair(SIGTERM, 143)}) {
        CliRun run(query({u"SELECT 'once', pg_sleep(600)"_qs}));
        ASSERT_TRUE(DXWait::until([] { return isActive(u"once"_qs); }));
        run.signal(signal);
        EXPECT_EQ(run.wait(), status);
        EXPECT_EQ(run.errors(), "ERROR:  canceling statement due to user request\n");
        EXPECT_TRUE(DXWait::until([] { return !isActive(u"once"_qs); }));
    }
}

TEST_F(CliProgramTest, SecondInterruptLeavesAtOnce)
{
    CliRun run(query({u"SELECT 'twice', pg_sleep(600)"_qs}));
    ASSERT_TRUE(DXWait::until([] { return isActive(u"twice"_qs); }));
    const auto backend = static_cast<pid_t>(
        cluster()
            .psql(u"SELECT pid FROM pg_stat_activity WHERE query LIKE '%twice%' AND pid <> "
                  "pg_backend_pid()"_qs)
            .trimmed()
            .toInt());
    // A server process that does not react keeps the program waiting for it.
    ASSERT_GT(backend, 1);
    ASSERT_EQ(::kill(backend, SIGSTOP), 0);
    run.signal(SIGINT);
    // The first has arrived when the program asks to be told no more: it asks for cancelling.
    const QString cancels = u"/proc/%1/status"_qs.arg(backend);
    EXPECT_TRUE(DXWait::until([&] {
        QFile status(cancels);
        // SIGINT waits for the stopped process: bit 1 of the pending signals.
        return status.open(QIODevice::ReadOnly)
               && status.readAll().contains("ShdPnd:\t0000000000000002");
    }));
    run.signal(SIGINT);
    EXPECT_EQ(run.wait(), 130);
    EXPECT_EQ(run.errors(), "");
    ASSERT_EQ(::kill(backend, SIGCONT), 0);
}

TEST_F(CliProgramTest, EndsQuietlyWhenNobodyReads)
{
    const QString status = m_folder.filePath(u"status"_qs);
    const QString script =
        u"{ \"$1\" query --format=csv --no-header "
        "\"SELECT 'unread', generate_series(1, 1000000000)\"; echo $? > \"$2\"; } | head -n 2"_qs;
    CliRun run({.arguments = {u"-c"_qs, script, u"sh"_qs, CliRun::defaultProgram(), status},
                .environment = CliRun::environmentFor(cluster()),
                .program = u"/bin/sh"_qs});
    EXPECT_EQ(run.wait(), 0);
    EXPECT_EQ(run.output(), "unread,1\nunread,2\n");
    EXPECT_EQ(run.errors(), "");
    EXPECT_TRUE(DXWait::until([&] {
        QFile file(status);
        return file.open(QIODevice::ReadOnly) && file.readAll() == "141\n";
    }));
    EXPECT_TRUE(DXWait::until([] { return !isActive(u"unread"_qs); }));
}

TEST_F(CliProgramTest, SaysThatTheOutputIsFull)
{
    CliRun run({.arguments = {u"-c"_qs, u"exec \"$1\" query 'SELECT 1' > /dev/full"_qs, u"sh"_qs,
                              CliRun::defaultProgram()},
                .environment = CliRun::environmentFor(cluster()),
                .program = u"/bin/sh"_qs});
    EXPECT_EQ(run.wait(), 1);
    EXPECT_THAT(run.errors().toStdString(), HasSubstr("No space left on device"));
}

TEST_F(CliProgramTest, HidesAPasswordFromTheProcessList)
{
    QString host = cluster().socketFolder();
    const QString url = u"postgres://dba:open%20sesame@%1:%2/postgres"_qs.arg(
        host.replace(u'/', u"%2F"_qs), QString::number(cluster().port()));
    CliRun run({.arguments = {u"query"_qs, url, u"SELECT 'hidden', pg_sleep(600)"_qs}});
    ASSERT_TRUE(DXWait::until([] { return isActive(u"hidden"_qs); }));
    QFile file(u"/proc/%1/cmdline"_qs.arg(run.processId()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string commandLine = file.readAll().toStdString();
    EXPECT_THAT(commandLine, Not(HasSubstr("sesame")));
    EXPECT_THAT(commandLine, HasSubstr("pg_sleep"));
}

TEST_F(CliProgramTest, ShowsTerminalsNothingThatCommandsThem)
{
    for (const QString &format : {u"table"_qs, u"csv"_qs, u"tsv"_qs, u"jsonl"_qs}) {
        CliRun::Init init = query(
            {u"-q"_qs, u"--format"_qs, format, u"SELECT E'\\x1b]0;title\\x07' AS \"\x1b[2J\""_qs});
        init.at = CliRun::At::Terminal;
        CliRun run(init);
        EXPECT_EQ(run.wait(), 0);
        EXPECT_FALSE(run.output().contains('\x1b')) << format.toStdString();
        EXPECT_THAT(run.output().toStdString(), HasSubstr("]0;title"));
    }
}

TEST_F(CliProgramTest, ColoursErrorsOnTerminalsOnly)
{
    for (const bool isColourWanted : {true, false}) {
        CliRun::Init init = query({u"selec"_qs});
        init.at = CliRun::At::Terminal;
        if (!isColourWanted)
            init.environment.insert(u"NO_COLOR"_qs, u"1"_qs);
        CliRun run(init);
        EXPECT_EQ(run.wait(), 1);
        EXPECT_EQ(run.output().contains("\x1b[31mERROR:"), isColourWanted);
    }
}

TEST_F(CliProgramTest, AsksForStatementsOnATerminal)
{
    CliRun::Init init = query({});
    init.at = CliRun::At::Terminal;
    CliRun run(init);
    ASSERT_TRUE(run.awaitOnTerminal("postgres=> "));
    run.type("SELECT 40 +\n");
    ASSERT_TRUE(run.awaitOnTerminal("postgres-> "));
    run.type("2 AS answer; -- done\n");
    ASSERT_TRUE(run.awaitOnTerminal(" 42\r\n"));
    ASSERT_TRUE(run.awaitOnTerminal("postgres=> "));
    run.type("SELECT 'not; yet\n");
    ASSERT_TRUE(run.awaitOnTerminal("postgres-> "));
    run.type("\x03");
    ASSERT_TRUE(run.awaitOnTerminal("postgres=> "));
    run.type("BEGIN;\n");
    ASSERT_TRUE(run.awaitOnTerminal("postgres*=> "));
    run.type("SELECT 'typed', pg_sleep(600);\n");
    ASSERT_TRUE(DXWait::until([] { return isActive(u"typed"_qs); }));
    run.type("\x03");
    ASSERT_TRUE(run.awaitOnTerminal("canceling statement"));
    ASSERT_TRUE(run.awaitOnTerminal("postgres!=> "));
    run.type("COMMIT;\n");
    ASSERT_TRUE(run.awaitOnTerminal("Command completed successfully.\r\n"));
    ASSERT_TRUE(run.awaitOnTerminal("The transaction was rolled back instead, because an earlier "
                                    "statement in it had failed.\r\n"));
    run.type("ROLLBACK; SELECT nope;\n");
    ASSERT_TRUE(run.awaitOnTerminal("^^^^"));
    ASSERT_TRUE(run.awaitOnTerminal("postgres=> "));
    cluster().psql(u"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE "
                   "application_name = 'dabro-cli'"_qs);
    ASSERT_TRUE(DXWait::until([] {
        return cluster().psql(u"SELECT count(*) FROM pg_stat_activity WHERE "
                              "application_name = 'dabro-cli'"_qs)
               == u"0"_qs;
    }));
    run.type("SELECT 'made ' || 'anew';\n");
    ASSERT_TRUE(run.awaitOnTerminal("The connection was lost"));
    ASSERT_TRUE(run.awaitOnTerminal("made anew\r\n"));
    ASSERT_TRUE(run.awaitOnTerminal("postgres=> "));
    run.type("\\q\n");
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(CliProgramTest, TakesThePasswordFromWhereverItMayBe)
{
    PostgresCluster guarded(PostgresCluster::Options{.hba = {u"local all all scram-sha-256"_qs}});
    guarded.psql(u"CREATE ROLE app LOGIN PASSWORD 'it''s secret'"_qs);
    QProcessEnvironment reached = CliRun::environmentFor(guarded);
    reached.insert(u"PGUSER"_qs, u"app"_qs);
    const QStringList arguments{u"query"_qs, u"-q"_qs, u"--format=csv"_qs, u"--no-header"_qs,
                                u"SELECT current_user"_qs};

    QProcessEnvironment environment = reached;
    environment.insert(u"PGPASSWORD"_qs, u"it's secret"_qs);
    CliRun byVariable({.arguments = arguments, .environment = environment});
    EXPECT_EQ(byVariable.wait(), 0) << byVariable.errors().toStdString();
    EXPECT_EQ(byVariable.output(), "app\n");

    environment.insert(u"PGPASSWORD"_qs, u"wrong"_qs);
    CliRun wrong({.arguments = arguments, .environment = environment});
    EXPECT_EQ(wrong.wait(), 3);
    EXPECT_THAT(wrong.errors().toStdString(), HasSubstr("password authentication failed"));

    environment = reached;
    environment.insert(u"PGPASSFILE"_qs, write(u"pgpass"_qs, "*:*:*:app:it's secret\n"));
    CliRun byFile({.arguments = arguments, .environment = environment});
    EXPECT_EQ(byFile.wait(), 0) << byFile.errors().toStdString();
    EXPECT_EQ(byFile.output(), "app\n");

    const QString service = write(
        u"services"_qs, u"[shop]\nhost=%1\nport=%2\nuser=app\ndbname=postgres\npassword=it's "
                        "secret\n"_qs.arg(guarded.socketFolder(), QString::number(guarded.port()))
                            .toUtf8());
    environment = {};
    environment.insert(u"PGSERVICEFILE"_qs, service);
    CliRun byService(
        {.arguments = QStringList(arguments) << u"--service=shop"_qs, .environment = environment});
    EXPECT_EQ(byService.wait(), 0) << byService.errors().toStdString();
    EXPECT_EQ(byService.output(), "app\n");

    CliRun byTerminal({.arguments = arguments, .environment = reached, .at = CliRun::At::Terminal});
    ASSERT_TRUE(byTerminal.awaitOnTerminal("Password: "));
    byTerminal.type("it's secret\n");
    EXPECT_EQ(byTerminal.wait(), 0);
    EXPECT_THAT(byTerminal.output().toStdString(), EndsWith("app\r\n"));
    EXPECT_FALSE(byTerminal.output().contains("secret"));
}

} // namespace
