// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliStatementInput.h"

#include "client/DabroDBC.h"
#include "plugin/DXDriverLoader.h"
#include "plugin/DXDriverPlugin.h"

#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

TEST(CliStatementInput, KnowsWhereAStatementEnds)
{
    const auto report = DXDriverLoader::load(DXDriverLoader::searchPath());
    const DXDriverLoader::Driver *driver = report.driverForScheme(u"postgres"_qs);
    ASSERT_TRUE(driver);
    const auto details = driver->plugin->createConnectionDetails();
    for (const QString &complete :
         {u"SELECT 1;"_qs, u"SELECT 1; -- done\n"_qs, u"SELECT 1; /* a */ SELECT 2;\n"_qs,
          u"SELECT ';';"_qs, u"selec ;"_qs,
          u"CREATE FUNCTION f() RETURNS int BEGIN ATOMIC SELECT 1; END;"_qs})
        EXPECT_TRUE(CliStatementInput::isComplete(complete, *details)) << complete.toStdString();
    for (const QString &unfinished :
         {u""_qs, u"SELECT 1"_qs, u"SELECT 1; SELECT 2"_qs, u"SELECT 'a;"_qs, u"SELECT (1;"_qs,
          u"SELECT $$;"_qs, u"SELECT 1 /* ;"_qs, u"SELECT 1 -- ;"_qs, u"-- only a comment"_qs,
          u"SELECT 1; SELECT 'a\n"_qs,
          u"CREATE FUNCTION f() RETURNS int BEGIN ATOMIC SELECT 1;"_qs})
        EXPECT_FALSE(CliStatementInput::isComplete(unfinished, *details))
            << unfinished.toStdString();
}

} // namespace
