// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliHelp.h"

namespace
{

constexpr char programHelp[] = R"(Usage: dabro-cli COMMAND [OPTIONS] [ARGUMENTS]

Runs SQL statements on a database server, and tells what is there.

Commands:
  query     run statements and print what they answer
  ping      connect, and tell how and to what
  script    print the scripts that create, alter or drop an object
  complete  print the names that begin as given
  tree      print what is on the server, as the window shows it
  search    find tables, views and functions by a part of their names

  dabro-cli COMMAND --help   tells all about a command
  dabro-cli --version        tells the program's version

Exit status:
    0   everything went well
    1   a statement or a part of the tree failed, or the output could not be written
    2   the command line is wrong, or a file could not be read
    3   no connection to the server
    4   no driver could be loaded
  130   stopped with Ctrl-C (141: whoever read the output went away)

Environment:
  DABRO_DRIVER_PATH   folders with drivers to try first, separated by colons
  NO_COLOR            when set, nothing is coloured
)";

constexpr char queryHelp[] = R"(Usage: dabro-cli query [OPTIONS] [URL] [STATEMENTS]

Runs STATEMENTS, or those of a file or of standard input, and prints the grid
and the message of each. With neither, on a terminal, it asks for statements.

All statements are sent together, as one batch. Unless they say BEGIN and COMMIT
themselves the server takes them as one transaction: when one fails, those behind
it are not run and those before it are undone.

What to run and how to print it:
  -f, --file FILE     read the statements from FILE; "-" is standard input
      --format FORMAT table (default), csv, jsonl (JSON lines) or tsv
      --no-header     leave out the names of the columns (table, csv, tsv)
  -q, --quiet         leave out the messages of what went well

  Grids go to standard output. So do the messages in the table format; in all
  others they go to standard error, as errors and notices always do.
    table  aligned; NULL for null; characters that do not print are escaped
    csv    RFC 4180, with line feeds; null is nothing, empty text is ""
    jsonl  an object a row; exact numbers as numbers, true, false, null
    tsv    \t, \n, \r and \\ inside a field; null is \N
)";

constexpr char pingHelp[] = R"(Usage: dabro-cli ping [OPTIONS] [URL]

Connects, and tells what connects, how, and to which version of the server.
)";

constexpr char scriptHelp[] =
    R"(Usage: dabro-cli script [OPTIONS] [URL] KIND OBJECT [COLUMN=VALUE...]

Prints the scripts for an object that exists, each under a comment with its
name, and runs none of them. Lines end as on other systems, too: with CR LF.

  KIND               OBJECT                         scripts
  table              [SCHEMA.]TABLE                 create, alter, drop,
                                                    drop-and-create, insert
  row                TABLE COLUMN=VALUE...          delete
  column             [SCHEMA.]TABLE.COLUMN          drop
  view               [SCHEMA.]VIEW                  create, alter, drop,
                                                    drop-and-create
  materialized-view  [SCHEMA.]VIEW                  create, alter, drop,
                                                    drop-and-create
  sequence           [SCHEMA.]SEQUENCE              alter, drop
  function           [SCHEMA.]FUNCTION(ARGUMENTS)   alter, drop
  trigger            [SCHEMA.]TABLE.TRIGGER         alter
  type, enumeration  [SCHEMA.]TYPE                  alter, drop
  index              [SCHEMA.]INDEX                 drop
  database           DATABASE                       drop

  Names are those of the catalogue, capitals included. What holds a dot stands in
  double quotes. The alter script of a sequence uses up its next value.

What to print:
      --as SCRIPT     this script alone, without the comment
)";

constexpr char completeHelp[] = R"(Usage: dabro-cli complete [OPTIONS] [URL] PREFIX

Prints the schemas, tables and columns whose names begin with PREFIX, whatever
their case; what stands in a schema or table when PREFIX is its name, a dot and
the beginning of a name. Fields are separated by tabs: the name, what it is,
where, and a column's type.
)";

constexpr char treeHelp[] = R"(Usage: dabro-cli tree [OPTIONS] [URL] [NAME...]

Prints the catalogue as a tree: the server, its databases (or the one that the
connection names), their tables, views, functions, types and sequences, and what
those consist of. NAMEs lead to where it begins: a database, then a folder such as
Tables, then an object, each as the tree itself calls it. Only what is printed is
loaded.

What to print:
      --depth LEVELS  how far below the first node to go; 3 without this option
      --menus         each node's menu below it, behind "> "
      --kinds         what each node is, in brackets
)";

constexpr char searchHelp[] = R"(Usage: dabro-cli search [OPTIONS] [URL] TEXT

Prints the tables, views and functions of the server's databases, or of the one
that the connection names, whose names hold TEXT, whatever its case.

What to print:
      --menus         each node's menu below it, behind "> "
      --kinds         what each node is, in brackets
)";

constexpr char connectionHelp[] = R"(
Connection (a URL, or options; what both leave out comes from the environment:
PGHOST, PGPORT, PGUSER, PGDATABASE, PGSERVICE, PGSSLMODE, ..., the service file
and the password file of the server's client library):
      --url URL       such as postgres://user@host:5432/database?sslmode=require
  -h, --host HOST     name, address, or the folder of a Unix socket
  -p, --port PORT
  -U, --user NAME
  -d, --database NAME
      --service VALUE an entry of the service file
      --sslmode VALUE disable, allow, prefer, require, verify-ca or verify-full
      --sslrootcert VALUE, --sslcert VALUE, --sslkey VALUE, --sslcrl VALUE
                      files: authority, own certificate, its key, revocations
      --ssh HOST      through an SSH tunnel to [USER@]HOST[:PORT]
      --ssh-identity FILE
                      private key for the tunnel
      --ssh-config FILE
                      ssh_config to use in place of your own
  -W, --password-prompt
                      ask for the password before connecting
      --driver NAME   the driver to use, when there are several
      --help          print this

A password is never an option, since others can read a process's arguments. It
comes from PGPASSWORD, the password file, or the terminal. One in a URL is wiped
from the arguments at once, but may have been seen, and stays in your shell's
history.
)";

constexpr char queryKeysHelp[] = R"(
Asking for statements: one runs when its line ends with a semicolon. \q or Ctrl-D
leaves; Ctrl-C drops what was typed. While statements run, the first Ctrl-C
cancels them, the second leaves at once.
)";

} // namespace

QString CliHelp::text(const QString &topic)
{
    if (topic == QLatin1String("query"))
        return QString::fromLatin1(queryHelp) + QLatin1String(connectionHelp)
               + QLatin1String(queryKeysHelp);
    if (topic == QLatin1String("ping"))
        return QString::fromLatin1(pingHelp) + QLatin1String(connectionHelp);
    if (topic == QLatin1String("script"))
        return QString::fromLatin1(scriptHelp) + QLatin1String(connectionHelp);
    if (topic == QLatin1String("complete"))
        return QString::fromLatin1(completeHelp) + QLatin1String(connectionHelp);
    if (topic == QLatin1String("tree"))
        return QString::fromLatin1(treeHelp) + QLatin1String(connectionHelp);
    if (topic == QLatin1String("search"))
        return QString::fromLatin1(searchHelp) + QLatin1String(connectionHelp);
    return QString::fromLatin1(programHelp);
}
