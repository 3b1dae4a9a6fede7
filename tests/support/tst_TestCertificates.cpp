// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestCertificates.h"

#include "support/PrintQt.h"
#include "support/Program.h"

#include <QFile>

#include <gtest/gtest.h>

namespace
{

// Status 0 when the authority signed the certificate and has not revoked it.
bool verifies(const TestCertificates &certificates, const QString &certificate,
              const QString &revocationList)
{
    return Program({.program = QStringLiteral("openssl"),
                    .arguments = {QStringLiteral("verify"), QStringLiteral("-crl_check_all"),
                                  QStringLiteral("-CAfile"), certificates.authority(),
                                  QStringLiteral("-CRLfile"), revocationList, certificate}})
        .succeeded();
}

TEST(TestCertificates, areSignedAndRevokedAsNamed)
{
    const TestCertificates made;
    EXPECT_TRUE(verifies(made, made.client().certificate, made.clientRevocationList()));
    EXPECT_FALSE(verifies(made, made.revokedClient().certificate, made.clientRevocationList()));
    EXPECT_TRUE(verifies(made, made.revokedClient().certificate, made.serverRevocationList()));
    EXPECT_TRUE(verifies(made, made.server().certificate, made.clientRevocationList()));
    EXPECT_FALSE(verifies(made, made.server().certificate, made.serverRevocationList()));
    EXPECT_FALSE(verifies(made, made.foreignAuthority(), made.clientRevocationList()));
    EXPECT_EQ(QFile::permissions(made.client().key)
                  & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

} // namespace
