// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ServerPrograms.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>

#include <pwd.h>
#include <unistd.h>

namespace
{

bool holdsServer(const QString &folder)
{
    return !folder.isEmpty() && QFile::exists(folder + QStringLiteral("/initdb"))
           && QFile::exists(folder + QStringLiteral("/pg_ctl"));
}

QString findFolder()
{
    const QString chosen = qEnvironmentVariable("DX_PG_BINDIR");
    if (!chosen.isEmpty())
        return holdsServer(chosen) ? chosen : QString();

    const QString told = QString::fromUtf8(
        Program({.program = QStringLiteral("pg_config"), .arguments = {QStringLiteral("--bindir")}})
            .output()
            .trimmed());
    if (holdsServer(told))
        return told;

    const QDir installed(QStringLiteral("/usr/lib/postgresql"));
    QStringList majors = installed.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCollator byNumber;
    byNumber.setNumericMode(true);
    std::sort(majors.begin(), majors.end(), byNumber);
    while (!majors.isEmpty()) {
        const QString candidate = installed.filePath(majors.takeLast() + QStringLiteral("/bin"));
        if (holdsServer(candidate))
            return candidate;
    }
    return {};
}

} // namespace

QString ServerPrograms::folder()
{
    static const QString found = findFolder();
    return found;
}

QString ServerPrograms::psql()
{
    const QString own = folder() + QStringLiteral("/psql");
    return QFile::exists(own) ? own : QStandardPaths::findExecutable(QStringLiteral("psql"));
}

QString ServerPrograms::version()
{
    const Program program({.program = folder() + QStringLiteral("/pg_ctl"),
                           .arguments = {QStringLiteral("--version")},
                           .environment = environment()});
    return QString::fromUtf8(program.output().trimmed());
}

std::optional<ServerPrograms::User> ServerPrograms::otherUser()
{
    if (::geteuid() != 0)
        return std::nullopt;
    const passwd *const entry = ::getpwnam("postgres");
    return entry ? std::optional(User{entry->pw_uid, entry->pw_gid}) : std::nullopt;
}

Program::Init ServerPrograms::asServerUser(const QString &program, const QStringList &arguments)
{
    const QString path = folder() + u'/' + program;
    if (::geteuid() != 0)
        return {.program = path, .arguments = arguments, .environment = environment()};
    const QStringList asPostgres{QStringLiteral("--reuid=postgres"),
                                 QStringLiteral("--regid=postgres"),
                                 QStringLiteral("--init-groups"), QStringLiteral("--"), path};
    return {.program = QStringLiteral("setpriv"),
            .arguments = asPostgres + arguments,
            .environment = environment()};
}

bool ServerPrograms::giveToServerUser(const QString &file)
{
    const auto user = otherUser();
    return !user || ::chown(QFile::encodeName(file).constData(), user->user, user->group) == 0;
}

QProcessEnvironment ServerPrograms::environment()
{
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    const QStringList names = result.keys();
    for (const QString &name : names) {
        if (name.startsWith(u"PG"))
            result.remove(name);
    }
    result.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    return result;
}
