// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliOptions.h"

#include "cli/CliArguments.h"
#include "cli/CliConnectionText.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace
{

using Command = CliOptions::Command;

struct Definition
{
    QStringList names;
    /// Empty for a switch.
    QString value;
};

struct CommandSyntax
{
    QLatin1String name;
    Command command;
    /// How many operands there are, at least and at most.
    qsizetype least;
    qsizetype most;
    /// What is wrong otherwise.
    QLatin1String advice;
};

constexpr CommandSyntax commands[] = {
    {QLatin1String("query"), Command::Query, 0, 1,
     QLatin1String("Put the statements into quotes, so that they are one argument.")},
    {QLatin1String("ping"), Command::Ping, 0, 0, QLatin1String("ping takes nothing but a URL.")},
    {QLatin1String("script"), Command::Script, 2, 1000,
     QLatin1String("script takes a kind of object, such as table, and an object's name.")},
    {QLatin1String("complete"), Command::Complete, 1, 1,
     QLatin1String("complete takes the beginning of a name.")},
    {QLatin1String("tree"), Command::Tree, 0, 1000,
     QLatin1String("tree takes the names of nodes, from below the server on.")},
    {QLatin1String("search"), Command::Search, 1, 1,
     QLatin1String("search takes a part of a name, in quotes when it holds blanks.")},
};

const CommandSyntax *commandNamed(const QString &name)
{
    const auto *const found =
        std::find_if(std::begin(commands), std::end(commands),
                     [&name](const CommandSyntax &each) { return each.name == name; });
    return found == std::end(commands) ? nullptr : found;
}

// "query, ping or …".
QString commandList()
{
    QStringList names;
    for (const CommandSyntax &each : commands)
        names += each.name;
    const QString last = names.takeLast();
    return names.join(QLatin1String(", ")) + QLatin1String(" or ") + last;
}

// Options that are entries of a connection string under the same name.
QStringList namesakeEntries()
{
    return {QStringLiteral("service"), QStringLiteral("sslmode"), QStringLiteral("sslrootcert"),
            QStringLiteral("sslcert"), QStringLiteral("sslkey"),  QStringLiteral("sslcrl")};
}

QList<Definition> connectionDefinitions()
{
    QList<Definition> definitions{
        {{QStringLiteral("url")}, QStringLiteral("URL")},
        {{QStringLiteral("h"), QStringLiteral("host")}, QStringLiteral("HOST")},
        {{QStringLiteral("p"), QStringLiteral("port")}, QStringLiteral("PORT")},
        {{QStringLiteral("U"), QStringLiteral("user")}, QStringLiteral("NAME")},
        {{QStringLiteral("d"), QStringLiteral("database")}, QStringLiteral("NAME")}};
    for (const QString &name : namesakeEntries())
        definitions.append({{name}, QStringLiteral("VALUE")});
    definitions += {{{QStringLiteral("ssh")}, QStringLiteral("HOST")},
                    {{QStringLiteral("ssh-identity")}, QStringLiteral("FILE")},
                    {{QStringLiteral("ssh-config")}, QStringLiteral("FILE")},
                    {{QStringLiteral("W"), QStringLiteral("password-prompt")}, {}},
                    {{QStringLiteral("driver")}, QStringLiteral("NAME")},
                    {{QStringLiteral("help")}, {}}};
    return definitions;
}

QList<Definition> definitionsOf(Command command)
{
    QList<Definition> definitions;
    if (command == Command::Query)
        definitions += {{{QStringLiteral("f"), QStringLiteral("file")}, QStringLiteral("FILE")},
                        {{QStringLiteral("format")}, QStringLiteral("FORMAT")},
                        {{QStringLiteral("no-header")}, {}},
                        {{QStringLiteral("q"), QStringLiteral("quiet")}, {}}};
    if (command == Command::Script)
        definitions += Definition{{QStringLiteral("as")}, QStringLiteral("SCRIPT")};
    if (command == Command::Tree)
        definitions += Definition{{QStringLiteral("depth")}, QStringLiteral("LEVELS")};
    if (command == Command::Tree || command == Command::Search)
        definitions += {{{QStringLiteral("menus")}, {}}, {{QStringLiteral("kinds")}, {}}};
    return definitions + connectionDefinitions();
}

/// One command's arguments on their way into the record.
class Reader
{
public:
    Reader(const CommandSyntax &syntax, CliOptions &options, QString &error)
        : m_syntax(syntax)
        , m_options(options)
        , m_error(error)
    { }

    bool read(const QStringList &arguments);

private:
    bool readConnection();
    bool readPositionals(QStringList positionals);
    bool readQuery();
    bool readTree();
    bool fail(const QString &text);
    QString value(const QString &name) const { return m_parser.value(name); }

    const CommandSyntax &m_syntax;
    CliOptions &m_options;
    QString &m_error;
    QCommandLineParser m_parser;
    QString m_url;
};

// Statements may begin with a comment in SQL, which looks like an option whose name has blanks in
// it; behind a blank of its own it does not.
bool beginsWithComment(const QString &argument)
{
    static const QRegularExpression form(QStringLiteral("\\A--[^\\s=]*\\s"));
    return form.match(argument).hasMatch();
}

bool Reader::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool Reader::read(const QStringList &arguments)
{
    for (const Definition &definition : definitionsOf(m_options.command))
        m_parser.addOption(QCommandLineOption(definition.names, QString(), definition.value));
    QStringList parsed{QString()};
    for (const QString &argument : arguments)
        parsed.append(beginsWithComment(argument) ? u' ' + argument : argument);
    if (!m_parser.parse(parsed))
        return fail(m_parser.errorText());
    if (m_parser.isSet(QStringLiteral("help"))) {
        m_options.helpTopic = m_syntax.name;
        m_options.command = Command::Help;
        return true;
    }
    m_options.driver = value(QStringLiteral("driver"));
    m_options.ssh = value(QStringLiteral("ssh"));
    m_options.sshIdentity = value(QStringLiteral("ssh-identity"));
    m_options.sshConfig = value(QStringLiteral("ssh-config"));
    m_options.asksPassword = m_parser.isSet(QStringLiteral("password-prompt"));
    if (m_options.command == Command::Script)
        m_options.script = value(QStringLiteral("as"));
    return readPositionals(m_parser.positionalArguments()) && readConnection()
           && (m_options.command != Command::Query || readQuery()) && readTree();
}

bool Reader::readPositionals(QStringList positionals)
{
    m_url = value(QStringLiteral("url"));
    if (!m_parser.isSet(QStringLiteral("url")) && !positionals.isEmpty()
        && CliArguments::isUri(positionals.constFirst()))
        m_url = positionals.takeFirst();
    if (positionals.size() > m_syntax.most)
        return fail(QStringLiteral("There is an argument too many: \"%1\". %2")
                        .arg(positionals[m_syntax.most], m_syntax.advice));
    if (positionals.size() < m_syntax.least)
        return fail(QStringLiteral("There is an argument missing: %1").arg(m_syntax.advice));
    if (m_options.command == Command::Query && !positionals.isEmpty())
        m_options.statements = positionals.takeFirst();
    m_options.operands = positionals;
    return true;
}

bool Reader::readConnection()
{
    CliConnectionText text;
    text.append(QStringLiteral("host"), value(QStringLiteral("host")));
    text.append(QStringLiteral("port"), value(QStringLiteral("port")));
    text.append(QStringLiteral("user"), value(QStringLiteral("user")));
    text.append(QStringLiteral("dbname"), value(QStringLiteral("database")));
    for (const QString &name : namesakeEntries())
        text.append(name, value(name));
    if (!m_url.isEmpty() && !text.isEmpty())
        return fail(QStringLiteral("The connection is given twice, as a URL and by options. Add "
                                   "what is missing to the URL, such as \"?sslmode=require\"."));
    if (m_options.ssh.isEmpty()
        && !(m_options.sshIdentity.isEmpty() && m_options.sshConfig.isEmpty()))
        return fail(QStringLiteral("--ssh-identity and --ssh-config need --ssh with the host."));
    m_options.connectionText = m_url.isEmpty() ? text.toString() : m_url;
    if (CliArguments::isUri(m_url))
        m_options.scheme = m_url.left(m_url.indexOf(u':'));
    return true;
}

bool Reader::readQuery()
{
    m_options.file = value(QStringLiteral("file"));
    if (m_options.statements && !m_options.file.isNull())
        return fail(
            QStringLiteral("The statements are given twice, as an argument and by --file."));
    const QString name = value(QStringLiteral("format"));
    const auto format = CliGridWriter::formatNamed(name.isNull() ? QStringLiteral("table") : name);
    if (!format)
        return fail(
            QStringLiteral("There is no format \"%1\": use table, csv, jsonl or tsv.").arg(name));
    m_options.format = *format;
    if (m_parser.isSet(QStringLiteral("no-header")))
        m_options.header = CliGridWriter::Header::No;
    m_options.isQuiet = m_parser.isSet(QStringLiteral("quiet"));
    return true;
}

bool Reader::readTree()
{
    m_options.hasMenus = m_parser.optionNames().contains(QStringLiteral("menus"));
    m_options.hasKinds = m_parser.optionNames().contains(QStringLiteral("kinds"));
    if (m_options.command != Command::Tree || !m_parser.isSet(QStringLiteral("depth")))
        return true;
    bool isNumber = false;
    m_options.depth = value(QStringLiteral("depth")).toInt(&isNumber);
    return (isNumber && m_options.depth >= 0)
           || fail(QStringLiteral("\"%1\" is no depth: use a number of levels, such as 2.")
                       .arg(value(QStringLiteral("depth"))));
}

} // namespace

std::optional<CliOptions> CliOptions::parse(const QStringList &arguments, QString &error)
{
    CliOptions options;
    const QString first = arguments.value(0);
    if (first.isEmpty()) {
        error = QStringLiteral("Say what to do: %1.").arg(commandList());
        return std::nullopt;
    }
    if (first == QLatin1String("--version") || first == QLatin1String("-V")) {
        options.command = Command::Version;
        return options;
    }
    if (first == QLatin1String("--help") || first == QLatin1String("help")) {
        options.helpTopic = arguments.value(1);
        return options;
    }
    const CommandSyntax *const syntax = commandNamed(first);
    if (!syntax) {
        error = QStringLiteral("There is no command \"%1\": use %2.").arg(first, commandList());
        return std::nullopt;
    }
    options.command = syntax->command;
    if (!Reader(*syntax, options, error).read(arguments.sliced(1)))
        return std::nullopt;
    return options;
}

QStringList CliOptions::optionNames(Command command)
{
    QStringList names;
    for (const Definition &definition : definitionsOf(command))
        names.append(definition.names.constLast());
    return names;
}
