// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestCertificates.h"

#include "support/Program.h"

#include <QFile>

#include <gtest/gtest.h>

TestCertificates::TestCertificates()
{
    const QString leaf = QStringLiteral("basicConstraints=critical,CA:FALSE");
    const QString signer = QStringLiteral("basicConstraints=critical,CA:TRUE");
    makeCertificate(QStringLiteral("root"), QStringLiteral("Test authority"), {signer});
    makeCertificate(QStringLiteral("foreign"), QStringLiteral("Foreign authority"), {signer});
    makeCertificate(
        QStringLiteral("server"), QStringLiteral("localhost"),
        {leaf, QStringLiteral("subjectAltName=DNS:localhost,DNS:%1").arg(serverName())});
    makeCertificate(QStringLiteral("client"), clientName(), {leaf});
    makeCertificate(QStringLiteral("revoked"), clientName(), {leaf});
    makeRevocationList(QStringLiteral("clients"), QStringLiteral("revoked"));
    makeRevocationList(QStringLiteral("servers"), QStringLiteral("server"));
}

TestCertificates::Pair TestCertificates::pair(const QString &name) const
{
    return {file(name + QStringLiteral(".crt")), file(name + QStringLiteral(".key"))};
}

void TestCertificates::openssl(const QStringList &arguments) const
{
    const Program program(
        {.program = QStringLiteral("openssl"), .arguments = arguments, .folder = m_folder.path()});
    if (!program.succeeded())
        ADD_FAILURE() << program.failure().toStdString();
}

// Elliptic keys, since making RSA ones takes seconds.
void TestCertificates::makeCertificate(const QString &name, const QString &subject,
                                       const QStringList &extensions) const
{
    const bool isSigner = extensions.first().endsWith(u":TRUE");
    QStringList arguments{QStringLiteral("req"),
                          QStringLiteral("-x509"),
                          QStringLiteral("-nodes"),
                          QStringLiteral("-newkey"),
                          QStringLiteral("ec"),
                          QStringLiteral("-pkeyopt"),
                          QStringLiteral("ec_paramgen_curve:prime256v1"),
                          QStringLiteral("-days"),
                          QStringLiteral("30"),
                          QStringLiteral("-subj"),
                          QStringLiteral("/CN=") + subject,
                          QStringLiteral("-keyout"),
                          pair(name).key,
                          QStringLiteral("-out"),
                          pair(name).certificate};
    if (!isSigner)
        arguments << QStringLiteral("-CA") << QStringLiteral("root.crt") << QStringLiteral("-CAkey")
                  << QStringLiteral("root.key");
    for (const QString &extension : extensions)
        arguments << QStringLiteral("-addext") << extension;
    openssl(arguments);
    QFile::setPermissions(pair(name).key, QFile::ReadOwner | QFile::WriteOwner);
}

// Each list has a database of its own, which is all that openssl knows of what is revoked.
void TestCertificates::makeRevocationList(const QString &list, const QString &revoked) const
{
    QFile configuration(file(list + QStringLiteral(".cnf")));
    QFile database(file(list + QStringLiteral(".txt")));
    if (!configuration.open(QFile::WriteOnly) || !database.open(QFile::WriteOnly))
        ADD_FAILURE() << "cannot write " << configuration.fileName().toStdString();
    configuration.write("[ca]\ndefault_ca=list\n[list]\ndatabase=" + list.toUtf8()
                        + ".txt\ndefault_md=sha256\ndefault_crl_days=30\n");
    configuration.close();
    const QStringList authority{QStringLiteral("ca"),       QStringLiteral("-config"),
                                configuration.fileName(),   QStringLiteral("-cert"),
                                QStringLiteral("root.crt"), QStringLiteral("-keyfile"),
                                QStringLiteral("root.key")};
    openssl(authority + QStringList{QStringLiteral("-revoke"), pair(revoked).certificate});
    openssl(authority
            + QStringList{QStringLiteral("-gencrl"), QStringLiteral("-out"),
                          file(list + QStringLiteral(".crl"))});
}
