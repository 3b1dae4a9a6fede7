// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/ssh/DXSSHCommand.h"

#include "client/secrets/DXSecurityBookmarkHelper.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

const auto errorDomain = "client.sshTunnel.open"_L1;
constexpr auto readyMark = "DABRO-TUNNEL-READY";

DXError refusal(const QString &description)
{
    return {errorDomain, EINVAL, description};
}

bool holdsAny(const QString &text, QStringView forbidden)
{
    return std::any_of(text.begin(), text.end(), [forbidden](QChar c) {
        return c.category() == QChar::Other_Control || forbidden.contains(c);
    });
}

// A user's ProxyCommand may hand the name to a shell. ssh itself refuses such names only of late.
bool isHostName(const QString &text)
{
    return !text.startsWith(u'-') && !holdsAny(text, u" '`\"$\\;&<>|(){}");
}

bool isUserName(const QString &text)
{
    return !text.startsWith(u'-') && !text.endsWith(u'\\') && !text.contains(u" -")
           && !holdsAny(text, u"'`\";&<>|(){}");
}

QString withoutBrackets(const QString &host)
{
    return host.startsWith(u'[') && host.endsWith(u']') ? host.mid(1, host.size() - 2) : host;
}

DXError checked(const DXSSHCommand::Request &request, const QString &targetHost)
{
    const DXSSHTunnelModel &model = request.model;
    if (model.host.isEmpty())
        return refusal(u"The SSH tunnel needs the name of an SSH server."_s);
    if (!isHostName(model.host))
        return refusal(u"\"%1\" is no name of an SSH server."_s.arg(model.host));
    if (!isUserName(model.username))
        return refusal(u"\"%1\" is no name of a user of the SSH server."_s.arg(model.username));
    if (model.configurationFile.contains(QChar(u'\0')))
        return refusal(u"The name of the SSH configuration file is no file name."_s);
    if (targetHost.contains(u'/'))
        return refusal(
            u"Through an SSH tunnel a server is reached by its host name or address, not "
            "by the socket folder \"%1\"."_s.arg(targetHost));
    if (targetHost.isEmpty() || !isHostName(targetHost) || holdsAny(targetHost, u"[]@"))
        return refusal(u"\"%1\" is no name of a host behind the SSH tunnel."_s.arg(targetHost));
    if (request.targetPort == 0)
        return refusal(u"The SSH tunnel to %1 needs the port of the server."_s.arg(targetHost));
    return {};
}

// A file name as a value of ssh_config(5), whose quotes, escapes and %-tokens mean themselves.
QByteArray quoted(const QString &path)
{
    QString text = path;
    text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s).replace(u'%', u"%%"_s);
    return QString(u'"' + text + u'"').toLocal8Bit();
}

// ssh starts LocalCommand and ProxyCommand with this shell: an account's that lets nobody log in
// would leave the tunnel waiting.
bool runsCommands(const QByteArray &shell)
{
    return access(shell.constData(), X_OK) == 0 && !shell.endsWith("/nologin")
           && !shell.endsWith("/false");
}

QList<QByteArray> environmentFor(const DXSSHCommand::Request &request)
{
    QList<QByteArray> environment;
    for (char **entry = environ; *entry; ++entry) {
        const QByteArrayView text(*entry);
        const bool isUnusableShell =
            text.startsWith("SHELL=") && !runsCommands(text.sliced(6).toByteArray());
        // What the user gave for the database is nothing for ssh, and for what its
        // configuration may start.
        const bool isSecret = text.startsWith("PGPASSWORD=");
        if (!text.startsWith("SSH_ASKPASS") && !isUnusableShell && !isSecret)
            environment += text.toByteArray();
    }
    if (!request.askpassProgram.isEmpty()) {
        environment += request.askpassEnvironment;
        environment += "SSH_ASKPASS=" + request.askpassProgram.toLocal8Bit();
        environment += QByteArrayLiteral("SSH_ASKPASS_REQUIRE=force");
    }
    return environment;
}

// Where the private key is; empty when the model names none. With error set when it is unreadable.
QString keyOf(const DXSSHTunnelModel &model, DXError &error)
{
    if (model.identityFile.isEmpty())
        return {};
    QString path =
        DXSecurityBookmarkHelper::sharedInstance().loadSecurePath(model.identityFile).toLocalFile();
    if (!QFileInfo(path).isReadable())
        error = {errorDomain, ENOENT,
                 u"The private key of the SSH tunnel, \"%1\", cannot be read. Choose the file "
                 "again."_s.arg(path.isEmpty() ? model.identityFile : path)};
    return path;
}

QString programOr(DXError &error)
{
    QString program = QStandardPaths::findExecutable(u"ssh"_s);
    if (program.isEmpty())
        error = {errorDomain, ENOENT,
                 u"SSH tunnels need the program ssh, which was not found. Install the package "
                 "openssh-client."_s};
    return program;
}

class Arguments final
{
public:
    void add(const QByteArray &argument) { m_list += argument; }
    void add(const char *name, const QByteArray &value)
    {
        if (!value.isEmpty())
            m_list += {QByteArray(name), value};
    }
    void option(const QByteArray &setting) { add("-o", setting); }
    const QList<QByteArray> &list() const { return m_list; }

private:
    QList<QByteArray> m_list;
};

QByteArray numberOrNothing(quint16 number)
{
    return number == 0 ? QByteArray() : QByteArray::number(number);
}

QList<QByteArray> argumentsFor(const DXSSHCommand::Request &request, const QString &targetHost,
                               const QString &key)
{
    const DXSSHTunnelModel &model = request.model;
    Arguments arguments;
    arguments.add("ssh");
    arguments.add("-N");
    arguments.add("-T");
    arguments.add("-F", model.configurationFile.toLocal8Bit());
    arguments.add("-p", numberOrNothing(model.port));
    arguments.add("-l", model.username.toLocal8Bit());
    if (!key.isEmpty()) {
        arguments.option("IdentityFile=" + quoted(key));
        arguments.option("IdentitiesOnly=yes");
    }
    arguments.option(request.askpassProgram.isEmpty() ? "BatchMode=yes" : "BatchMode=no");
    // What the user's configuration says must not make the forwarding somebody else's, such as a
    // master's that outlives us, nor silence the errors that we show.
    for (const char *setting :
         {"ControlMaster=no", "ControlPath=none", "ForkAfterAuthentication=no",
          "RemoteCommand=none", "LogLevel=INFO", "ExitOnForwardFailure=yes",
          "ServerAliveInterval=15", "ServerAliveCountMax=3", "PermitLocalCommand=yes"})
        arguments.option(setting);
    // ssh runs it once the forwarded port is open.
    arguments.option(QByteArray("LocalCommand=echo ") + readyMark);
    arguments.add("-L", "127.0.0.1:" + QByteArray::number(request.localPort) + ":["
                            + targetHost.toLocal8Bit()
                            + "]:" + QByteArray::number(request.targetPort));
    arguments.add("--", withoutBrackets(model.host).toLocal8Bit());
    return arguments.list();
}

} // namespace

std::optional<DXSSHProcess::Command> DXSSHCommand::make(const Request &request, DXError *error)
{
    const QString targetHost = withoutBrackets(request.targetHost);
    DXError failure = checked(request, targetHost);
    const QString key = failure ? QString() : keyOf(request.model, failure);
    const QString program = failure ? QString() : programOr(failure);
    if (failure) {
        DXError::report(error, failure);
        return std::nullopt;
    }
    return DXSSHProcess::Command{
        .program = program.toLocal8Bit(),
        .arguments = argumentsFor(request, targetHost, key),
        .environment = environmentFor(request),
        .readyMark = readyMark,
    };
}
