// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresPasswordFile.h"

#include "core/DXLogHelper.h"
#include "driver/PostgresDatabaseConnectionDetails.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <libpq-fe.h>

#include <memory>
#include <optional>

namespace
{

/// The rest of line behind its first field, when that field means text.
std::optional<QByteArrayView> behindField(QByteArrayView line, QByteArrayView text)
{
    if (line.startsWith("*:"))
        return line.sliced(2);
    for (;;) {
        if (text.isEmpty() && line.startsWith(':'))
            return line.sliced(1);
        if (line.startsWith('\\'))
            line = line.sliced(1);
        if (line.isEmpty() || text.isEmpty() || line.front() != text.front())
            return std::nullopt;
        line = line.sliced(1);
        text = text.sliced(1);
    }
}

QByteArray withoutEscapes(QByteArrayView field)
{
    QByteArray text;
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 1 < field.size())
            ++i;
        text += field[i];
    }
    return text;
}

QByteArrayView withoutLineEnd(QByteArrayView line)
{
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return line;
}

/// What libpq adds to a connection string, from the service and variables of the environment.
QMap<QString, QString> addedByLibpq()
{
    QMap<QString, QString> values;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(PQconndefaults(),
                                                                               &PQconninfoFree);
    for (const auto *option = options.get(); option && option->keyword; ++option) {
        if (option->val)
            values.insert(QString::fromLatin1(option->keyword), QFile::decodeName(option->val));
    }
    return values;
}

QString firstOf(std::initializer_list<QString> texts)
{
    for (const QString &text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return {};
}

} // namespace

bool PostgresPasswordFile::isOpenToOthers() const
{
    const QFileInfo file(m_path);
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                        | QFile::WriteOther | QFile::ExeOther;
    return file.isFile() && (file.permissions() & others);
}

QString PostgresPasswordFile::passwordFor(const Login &login) const
{
    if (isOpenToOthers()) {
        DXLog(QStringLiteral("The password file \"%1\" is not used, since it is open to others.")
                  .arg(m_path));
        return {};
    }
    QFile file(m_path);
    if (!QFileInfo(file).isFile() || !file.open(QFile::ReadOnly))
        return {};
    const QByteArray host = login.host.toUtf8();
    const QByteArray port = QByteArray::number(login.port);
    const QByteArray user = login.user.toUtf8();
    const QByteArray database = login.database.toUtf8();
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.startsWith('#'))
            continue;
        std::optional<QByteArrayView> rest = withoutLineEnd(line);
        for (const QByteArrayView field : {host, port, database, user})
            rest = rest ? behindField(*rest, field) : std::nullopt;
        if (rest)
            return QString::fromUtf8(withoutEscapes(*rest));
    }
    return {};
}

PostgresPasswordFile::Found
PostgresPasswordFile::find(const PostgresDatabaseConnectionDetails &details,
                           const QString &database)
{
    const QMap<QString, QString> added = addedByLibpq();
    if (!details.password().isEmpty() || !added.value(QStringLiteral("password")).isEmpty())
        return {};
    const QString passfile = QStringLiteral("passfile");
    const QString user = firstOf({details.username(), added.value(QStringLiteral("user"))});
    const PostgresPasswordFile file(
        firstOf({details.connectionParameters().value(passfile), added.value(passfile),
                 QDir::home().filePath(QStringLiteral(".pgpass"))}));
    const QString password = file.passwordFor(
        {.host = firstOf({details.host(), QStringLiteral("localhost")}),
         .port =
             details.port() == 0 ? PostgresDatabaseConnectionDetails::defaultPort : details.port(),
         .database = firstOf({database, added.value(QStringLiteral("dbname")), user}),
         .user = user});
    return password.isEmpty() ? Found() : Found{.password = password, .path = file.m_path};
}
