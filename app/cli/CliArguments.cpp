// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"

#include <QByteArrayView>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>

namespace
{

// Where a secret of a connection's text begins; the text's size when it holds none.
qsizetype startOfSecret(const QByteArray &text)
{
    qsizetype start = text.size();
    const qsizetype scheme = text.indexOf("://");
    if (scheme >= 0) {
        const qsizetype at = text.lastIndexOf('@');
        const qsizetype colon = text.indexOf(':', scheme + 3);
        if (colon >= 0 && colon < at)
            start = colon + 1;
    }
    // Also "sslpassword".
    const QByteArray lower = text.toLower();
    for (qsizetype key = lower.indexOf("password"); key >= 0 && key < start;
         key = lower.indexOf("password", key + 1)) {
        const qsizetype equals = lower.indexOf('=', key);
        if (equals >= 0)
            start = std::min(start, equals + 1);
    }
    return start;
}

} // namespace

bool CliArguments::isUri(const QString &argument)
{
    static const QRegularExpression expression(QStringLiteral("\\A[A-Za-z][A-Za-z0-9+.-]*://"));
    return expression.match(argument).hasMatch();
}

QStringList CliArguments::take(int argc, char **argv, Connections connections)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        const QByteArray argument(argv[index]);
        arguments.append(QString::fromLocal8Bit(argument));
        const bool isConnection = connections == Connections::Any || isUri(arguments.constLast())
                                  || argument.startsWith("--url=")
                                  || (index > 1 && std::strcmp(argv[index - 1], "--url") == 0);
        if (!isConnection)
            continue;
        const qsizetype start = startOfSecret(argument);
        std::memset(argv[index] + start, 0, static_cast<size_t>(argument.size() - start));
    }
    return arguments;
}
