// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresSessionSettings.h"

#include "support/PostgresCluster.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

namespace
{

using Settings = QMap<QString, QString>;

/// What the server shows for a setting after the statement that a connection makes of it ran.
QString shownByServer(const QString &name, const QString &value)
{
    const QString format = name == QStringLiteral("timezone")
                               ? QStringLiteral("SET TIME ZONE '%2'; SHOW %1")
                               : QStringLiteral("SET %1 TO %2; SHOW %1");
    return PostgresCluster::shared().psql(format.arg(name, value)).section(QLatin1Char('\n'), -1);
}

TEST(PostgresSessionSettings, meansToTheServerWhatWasAskedFor)
{
    struct Case
    {
        const char *name;
        const char *value;
        const char *shown;
    };
    for (const auto &[name, value, shown] : std::initializer_list<Case>{
             {"application_name", "it's; DROP TABLE x --", "it's; DROP TABLE x --"},
             {"application_name", "back\\slash' \\'", "back\\slash' \\'"},
             {"application_name", "default", "default"},
             {"application_name", "", ""},
             {"statement_timeout", "5s", "5s"},
             {"enable_seqscan", "off", "off"},
             {"DateStyle", "ISO, DMY", "ISO, DMY"},
             {"TimeZone", "Europe/Vienna", "Europe/Vienna"},
             {"search_path", "Sales , \"Odd, \"\"Name\", public",
              "sales, \"Odd, \"\"Name\", public"},
             {"search_path", "a;drop table x", "\"a;drop table x\""},
             {"search_path", "", "\"\""},
             {"shop.customer", "42", "42"},
         }) {
        Settings settings;
        DXError error;
        ASSERT_TRUE(PostgresSessionSettings::add(QString::fromUtf8(name), QString::fromUtf8(value),
                                                 settings, &error))
            << error.description().toStdString();
        ASSERT_EQ(settings.size(), 1) << name;
        EXPECT_EQ(shownByServer(settings.firstKey(), settings.first()), QString::fromUtf8(shown))
            << settings.first().toStdString();
    }
}

TEST(PostgresSessionSettings, refusesWhatIsNoSetting)
{
    for (const auto &[name, value] : std::initializer_list<std::pair<const char *, const char *>>{
             {"", "x"},
             {"work_mem; DROP", "x"},
             {"a.", "x"},
             {"timezone", "UTC'; DROP TABLE x; --"},
             {"timezone", "\\"},
             {"client_encoding", "LATIN1"},
         }) {
        Settings settings;
        DXError error;
        EXPECT_FALSE(PostgresSessionSettings::add(QString::fromUtf8(name), QString::fromUtf8(value),
                                                  settings, &error))
            << name;
        EXPECT_TRUE(error) << name;
        EXPECT_TRUE(settings.isEmpty()) << name;
    }
}

TEST(PostgresSessionSettings, readsTheServersCommandLine)
{
    Settings settings;
    DXError error;
    const QString options = QStringLiteral(
        " -c work-mem=64MB  --enable-seqscan=off -cgeqo=off -c application_name=a\\ b\\\\c "
        "--client-encoding=utf-8 -c a.b=x=y ");
    ASSERT_TRUE(PostgresSessionSettings::addOptions(options, settings, &error))
        << error.description().toStdString();
    const Settings expected{{QStringLiteral("work_mem"), QStringLiteral("'64MB'")},
                            {QStringLiteral("enable_seqscan"), QStringLiteral("'off'")},
                            {QStringLiteral("geqo"), QStringLiteral("'off'")},
                            {QStringLiteral("application_name"), QStringLiteral("E'a b\\\\c'")},
                            {QStringLiteral("a.b"), QStringLiteral("'x=y'")}};
    EXPECT_EQ(settings, expected);
    for (const char *refused : {"-d 2", "-c", "-c work_mem", "--work_mem", "x", "-c =1"}) {
        EXPECT_FALSE(
            PostgresSessionSettings::addOptions(QString::fromUtf8(refused), settings, &error))
            << refused;
        EXPECT_EQ(settings, expected) << refused;
    }
}

} // namespace
