// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "plugin/DXDriverLoader.h"
#include "plugin/DXDriverPlugin.h"
#include "support/PrintQt.h"

#include <QFileInfo>
#include <QLibrary>

#include <gtest/gtest.h>

namespace
{

DXDriverLoader::Report loadDrivers()
{
    return DXDriverLoader::load({QFileInfo(QStringLiteral(DX_DRIVER_FILE)).path()});
}

TEST(DabroPostgresPlugin, opensBothSchemes)
{
    const DXDriverLoader::Report report = loadDrivers();
    EXPECT_TRUE(report.refusals.isEmpty());
    const auto *driver = report.driverForScheme(QStringLiteral("postgres"));
    ASSERT_TRUE(driver);
    EXPECT_EQ(driver, report.driverForScheme(QStringLiteral("postgresql")));
    EXPECT_EQ(driver->metadata.identifier, QStringLiteral("org.dabro.postgres"));

    const auto empty = driver->plugin->createConnectionDetails();
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->description(), QStringLiteral("@@:5432"));
    EXPECT_TRUE(empty->sqlKeywords().contains(QStringLiteral("select")));
    EXPECT_TRUE(empty->createNewClient());
}

TEST(DabroPostgresPlugin, readsConnectionStrings)
{
    const DXDriverLoader::Report report = loadDrivers();
    const auto *driver = report.driverForScheme(QStringLiteral("postgres"));
    ASSERT_TRUE(driver);
    DXError error;
    const auto details = driver->plugin->connectionDetailsFromString(
        QStringLiteral("postgres://dba@db1:1/shop"), &error);
    ASSERT_TRUE(details) << error.description().toStdString();
    EXPECT_EQ(details->description(), QStringLiteral("dba@@db1:1 - shop"));
    EXPECT_FALSE(driver->plugin->connectionDetailsFromString(QStringLiteral("nonsense"), &error));
    EXPECT_TRUE(error);
}

TEST(DabroPostgresPlugin, exportsItsVersion)
{
    QLibrary library(QStringLiteral(DX_DRIVER_FILE));
    const auto *const number = reinterpret_cast<const double *>(
        reinterpret_cast<quintptr>(library.resolve("DabroPostgresVersionNumber")));
    const auto *const text = reinterpret_cast<const char *>(
        reinterpret_cast<quintptr>(library.resolve("DabroPostgresVersionString")));
    ASSERT_TRUE(number && text) << library.errorString().toStdString();
    EXPECT_EQ(*number, 1.0);
    EXPECT_STREQ(text, "@(#)PROGRAM:DabroPostgres  PROJECT:DabroPostgres-1\n");
    EXPECT_FALSE(library.resolve("_Z28qInitResources_DabroPostgresv"))
        << "what is private stays so";
}

} // namespace
