// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresSSLDetails.h"

#include "support/PrintQt.h"

#include <gtest/gtest.h>

namespace
{

TEST(PostgresSSLDetails, comparesTheModeByIdentityAndFilesByContent)
{
    PostgresSSLDetails left;
    left.setSslMode(PostgresSSLDetails::modes()[2]);
    left.setClientCertificate(QStringLiteral("cert"));
    PostgresSSLDetails right = left;
    EXPECT_TRUE(left.isEqual(right));

    right.setClientCertificate(QString::fromLatin1("cert"));
    EXPECT_TRUE(left.isEqual(right));
    right.setClientKeyFile(QStringLiteral(""));
    EXPECT_FALSE(left.isEqual(right)) << "absent and empty";
    right = left;
    right.setSslCompression(true);
    EXPECT_FALSE(left.isEqual(right));
    right = left;
    right.setSslMode(QString::fromLatin1("prefer"));
    EXPECT_FALSE(left.isEqual(right)) << "another object with the same text";
    right.setSslMode(PostgresSSLDetails::canonicalMode(right.sslMode()));
    EXPECT_TRUE(left.isEqual(right));
    EXPECT_TRUE(PostgresSSLDetails().isEqual({}));
}

TEST(PostgresSSLDetails, comesBackFromItsArchiveEqual)
{
    PostgresSSLDetails details;
    details.setSslMode(PostgresSSLDetails::canonicalMode(QStringLiteral("verify-ca")));
    details.setClientKeyFile(QStringLiteral("key"));
    details.setClientCertificate(QStringLiteral(""));
    details.setServerRootCertificate(QStringLiteral("root"));
    details.setSslCompression(true);
    const QByteArray bytes = QCborValue(details.encode()).toCbor();
    EXPECT_TRUE(PostgresSSLDetails::decode(QCborValue::fromCbor(bytes).toMap()).isEqual(details));
    EXPECT_EQ(PostgresSSLDetails::canonicalMode(QStringLiteral("future")),
              QStringLiteral("future"));
}

} // namespace
