// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliOptions.h"

#include "cli/CliArguments.h"
#include "cli/CliHelp.h"
#include "cli/CliSSHOption.h"
#include "support/PrintQt.h"

#include <QFile>

#include <QList>

#include <gmock/gmock.h>

#include <vector>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

CliOptions parsed(const QString &line)
{
    QString error;
    const auto options = CliOptions::parse(line.split(u' ', Qt::SkipEmptyParts), error);
    EXPECT_TRUE(options) << error.toStdString();
    return options.value_or(CliOptions());
}

QString errorOf(const QString &line)
{
    QString error;
    EXPECT_FALSE(CliOptions::parse(line.split(u' ', Qt::SkipEmptyParts), error));
    return error;
}

TEST(CliOptions, ReadsStatementsAndHowToPrintThem)
{
    const CliOptions defaults = parsed(u"query SELECT"_qs);
    EXPECT_EQ(defaults.command, CliOptions::Command::Query);
    EXPECT_EQ(defaults.statements, u"SELECT"_qs);
    EXPECT_TRUE(defaults.file.isNull());
    EXPECT_EQ(defaults.format, CliFormat::Table);
    EXPECT_EQ(defaults.header, CliGridWriter::Header::Yes);
    EXPECT_EQ(defaults.connectionText, QString());

    const CliOptions options = parsed(u"query -f - --format jsonl --no-header -q -W"_qs);
    EXPECT_FALSE(options.statements);
    EXPECT_EQ(options.file, u"-"_qs);
    EXPECT_EQ(options.format, CliFormat::JsonLines);
    EXPECT_EQ(options.header, CliGridWriter::Header::No);
    EXPECT_TRUE(options.isQuiet);
    EXPECT_TRUE(options.asksPassword);
    EXPECT_EQ(parsed(u"query -- --comment"_qs).statements, u"--comment"_qs);
    for (const QString &commented : {u"-- all\nSELECT 1"_qs, u"--all\nSELECT 1"_qs}) {
        QString error;
        const auto read = CliOptions::parse({u"query"_qs, commented}, error);
        ASSERT_TRUE(read) << error.toStdString();
        EXPECT_EQ(read->statements.value_or(QString()).trimmed(), commented);
    }
}

TEST(CliOptions, TakesAConnectionInThreeNotations)
{
    EXPECT_EQ(
        parsed(u"ping -h /tmp -p5433 --user=o'brien -d a\\b --sslmode require"_qs).connectionText,
        u"host='/tmp' port='5433' user='o\\'brien' dbname='a\\\\b' sslmode='require'"_qs);
    const CliOptions uri = parsed(u"query postgres://h/d SELECT"_qs);
    EXPECT_EQ(uri.connectionText, u"postgres://h/d"_qs);
    EXPECT_EQ(uri.scheme, u"postgres"_qs);
    EXPECT_EQ(uri.statements, u"SELECT"_qs);
    const CliOptions string = parsed(u"query --url host=h SELECT"_qs);
    EXPECT_EQ(string.connectionText, u"host=h"_qs);
    EXPECT_EQ(string.scheme, QString());
}

TEST(CliOptions, SaysWhatIsWrong)
{
    const QList<std::pair<QString, const char *>> cases{
        {u""_qs, "Say what to do"},
        {u"drop"_qs, "no command \"drop\""},
        {u"query --nonsense"_qs, "nonsense"},
        {u"query --password=x"_qs, "password"},
        {u"query --port"_qs, "port"},
        {u"query a b"_qs, "an argument too many: \"b\""},
        {u"ping SELECT"_qs, "an argument too many"},
        {u"script table"_qs, "an argument missing"},
        {u"tree --depth two"_qs, "\"two\" is no depth"},
        {u"search --depth 2 x"_qs, "depth"},
        {u"query -f x SELECT"_qs, "given twice"},
        {u"query postgres://h -p 1"_qs, "given twice"},
        {u"query --format xml"_qs, "no format \"xml\""},
        {u"ping --ssh-config x"_qs, "need --ssh"}};
    for (const auto &[line, part] : cases)
        EXPECT_THAT(errorOf(line).toStdString(), HasSubstr(part));
}

TEST(CliOptions, HelpAndManualTellOfEveryOption)
{
    QFile file(QStringLiteral(DX_MANUAL_PAGE));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string manual =
        QString::fromUtf8(file.readAll()).replace(u"\\-"_qs, u"-"_qs).toStdString();
    using Command = CliOptions::Command;
    for (const auto &[line, command] :
         {std::pair(u"query --help"_qs, Command::Query), std::pair(u"help ping"_qs, Command::Ping),
          std::pair(u"script --help"_qs, Command::Script),
          std::pair(u"complete --help"_qs, Command::Complete),
          std::pair(u"tree --help"_qs, Command::Tree),
          std::pair(u"search --help"_qs, Command::Search)}) {
        const std::string help = CliHelp::text(parsed(line).helpTopic).toStdString();
        for (const QString &name : CliOptions::optionNames(command)) {
            const std::string option = (u"--"_qs + name).toStdString();
            EXPECT_THAT(help, ContainsRegex(option + "[ \n]"));
            EXPECT_THAT(manual, ContainsRegex(option + "[ \n\\]"));
        }
    }
    EXPECT_EQ(CliHelp::text(u"nothing"_qs), CliHelp::text(QString()));
}

TEST(CliOptions, ReadsAnSshServerAsSshDoes)
{
    const auto whole = cliSSHTunnel(u"me@example.org:2222"_qs);
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->username, u"me"_qs);
    EXPECT_EQ(whole->host, u"example.org"_qs);
    EXPECT_EQ(whole->port, 2222);
    const auto alias = cliSSHTunnel(u"alias"_qs);
    ASSERT_TRUE(alias);
    EXPECT_EQ(alias->host, u"alias"_qs);
    EXPECT_EQ(alias->port, 0);
    const auto address = cliSSHTunnel(u"[::1]:22"_qs);
    ASSERT_TRUE(address);
    EXPECT_EQ(address->host, u"::1"_qs);
    EXPECT_EQ(address->port, 22);
    for (const QString &wrong :
         {u""_qs, u"-oProxyCommand=x"_qs, u"me@-oProxyCommand=x"_qs, u"host:0"_qs, u"host:70000"_qs,
          u"host:x"_qs, u"@host"_qs, u"-l@host"_qs, u"two words"_qs})
        EXPECT_FALSE(cliSSHTunnel(wrong)) << wrong.toStdString();
}

TEST(CliArguments, WipesPasswordsWhereOthersReadThem)
{
    const QList<std::pair<QByteArray, QByteArray>> cases{
        {"postgres://me:secret@h/d", "postgres://me:"},
        {"postgres://me:se@cret@h/d", "postgres://me:"},
        {"postgres://me@h:5432/d", "postgres://me@h:5432/d"},
        {"postgres://h/d?user=x&password=secret&port=1", "postgres://h/d?user=x&password="},
        {"postgres://h/d?sslpassword=secret", "postgres://h/d?sslpassword="},
        {"--url=host=h PASSWORD = secret", "--url=host=h PASSWORD ="},
        {"SELECT password = 'x'", "SELECT password = 'x'"}};
    for (const auto &[argument, left] : cases) {
        QByteArray program("dabro-cli");
        QByteArray memory = argument;
        std::vector<char *> argv{program.data(), memory.data(), nullptr};
        EXPECT_EQ(CliArguments::take(2, argv.data()), QStringList(QString::fromUtf8(argument)));
        EXPECT_EQ(memory, left + QByteArray(argument.size() - left.size(), '\0'));
    }
    QByteArray program("dabro-cli");
    QByteArray option("--url");
    QByteArray memory("password=secret");
    std::vector<char *> argv{program.data(), option.data(), memory.data(), nullptr};
    EXPECT_EQ(CliArguments::take(3, argv.data()),
              QStringList({u"--url"_qs, u"password=secret"_qs}));
    EXPECT_THAT(memory.constData(), StrEq("password="));
}

} // namespace
