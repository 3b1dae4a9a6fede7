// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresAdvancedSettings.h"
#include "connection/PostgresConnectionFormController.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresRecentConnection.h"
#include "support/Background.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

using Controller = PostgresConnectionFormController;
using Fields = PostgresConnectionFields;
using Field = Controller::Field;

namespace
{

TEST(PostgresConnectionFormController, tellsAddressesFromWhatAFieldHolds)
{
    for (const QString &text : {u"postgres://h"_qs, u" PostgreSQL://u:p@h:1/d?sslmode=require"_qs,
                                u"host=h"_qs, u"dbname = shop user=dba"_qs, u"service=shop\n"_qs})
        EXPECT_TRUE(Controller::isConnectionString(text)) << qPrintable(text);
    for (const QString &text : {u"db.example.org"_qs, u"/run/postgresql"_qs, u"a=b"_qs, u"host="_qs,
                                u"mysql://h"_qs, QString()})
        EXPECT_FALSE(Controller::isConnectionString(text)) << qPrintable(text);
    EXPECT_FALSE(Controller::isConnectionURI(u"password=x"_qs));
}

TEST(PostgresConnectionFormController, namesWhatAConnectionCannotCarry)
{
    const auto tunnel = std::make_shared<DXSSHTunnelModel>();
    const QMap<QString, QString> address{{u"hostaddr"_qs, u"10.0.0.1"_qs}};
    const struct
    {
        Fields fields;
        QList<Field> problems;
    } cases[] = {
        {{}, {}},
        {{.host = u"::1"_qs, .port = u" 5432 "_qs, .password = u"'\"§"_qs}, {}},
        {{.host = u"o'neil"_qs, .user = u"a\\b"_qs, .database = u"it's"_qs},
         {Field::Host, Field::User, Field::Database}},
        {{.host = u"two hosts"_qs, .port = u"65536"_qs}, {Field::Host, Field::Port}},
        {{.port = u"0"_qs, .password = u"a\\b"_qs}, {Field::Port, Field::Password}},
        {{.host = u"/run"_qs, .tunnel = tunnel}, {Field::Host}},
        {{.host = u"h"_qs, .tunnel = tunnel, .connectionParameters = address}, {Field::Host}},
        {{.host = u"a,b"_qs, .connectionParameters = address}, {Field::Host}},
        {{.host = u"h"_qs, .connectionParameters = address}, {}},
    };
    for (const auto &test : cases)
        EXPECT_EQ(Controller::problemsOf(test.fields).keys(), test.problems)
            << qPrintable(test.fields.host + test.fields.port);
}

TEST(PostgresConnectionFormController, keepsWhatAnAddressLeavesOpen)
{
    const auto read = [](const QString &text) {
        return inBackground([text] { return Controller::read(text, nullptr); });
    };
    const auto ssl = std::make_shared<PostgresSSLDetails>();
    const Fields before{.name = u"shop"_qs,
                        .host = u"old"_qs,
                        .password = u"of the old server"_qs,
                        .ssl = ssl,
                        .sessionParameters = {{u"timezone"_qs, u"UTC"_qs}},
                        .connectionParameters = {{u"hostaddr"_qs, u"10.0.0.1"_qs},
                                                 {u"connect_timeout"_qs, u"9"_qs},
                                                 {u"sslsni"_qs, u"0"_qs}},
                        .groupSchemas = false};
    const auto address = read(u"host=h port=6 user=u application_name=a connect_timeout=3"_qs);
    ASSERT_TRUE(address);
    const Fields after = Controller::merged(before, *address);
    EXPECT_EQ(after.name, u"shop"_qs);
    EXPECT_EQ(after.host, u"h"_qs);
    EXPECT_EQ(after.password, QString());
    EXPECT_EQ(after.ssl, ssl);
    EXPECT_EQ(after.sessionParameters.keys(),
              (QStringList{u"application_name"_qs, u"timezone"_qs}));
    EXPECT_EQ(after.connectionParameters,
              (QMap<QString, QString>{{u"connect_timeout"_qs, u"3"_qs}, {u"sslsni"_qs, u"0"_qs}}));
    EXPECT_FALSE(after.groupSchemas);
    EXPECT_EQ(Controller::withHost(before, u"old "_qs).connectionParameters,
              before.connectionParameters);
    EXPECT_FALSE(
        Controller::withHost(before, u"new"_qs).connectionParameters.contains(u"hostaddr"_qs));
    EXPECT_FALSE(read(u"postgres://h:port/"_qs));
}

TEST(PostgresConnectionFormController, changesNothingOfARecordThatIsShown)
{
    PostgresRecentConnection record;
    record.setConnectionId(u"id"_qs);
    record.setAlias(u"shop/till"_qs);
    record.setTabColor(u"#2563EB"_qs);
    record.setServerHost(u"h"_qs);
    record.setServerPort(6);
    record.setUsername(u"u"_qs);
    record.setPassword(u"p"_qs);
    record.setRememberPassword(true);
    record.setDatabase(u"d"_qs);
    record.setGroupSchemas(true);
    record.setConnectionSessionParameters({{u"work_mem"_qs, u"'8MB'"_qs}});
    record.setConnectionParameters({{u"connect_timeout"_qs, u"10"_qs}});
    record.setSshTunnelDetails(std::make_shared<DXSSHTunnelModel>(
        DXSSHTunnelModel{.host = u"hop"_qs, .port = 22, .configurationFile = u"/c"_qs}));
    record.setSslDetails(std::make_shared<PostgresSSLDetails>());
    record.sslDetails()->setSslMode(PostgresSSLDetails::modes().back());
    const auto copy = Controller::recordOf(Controller::fieldsOf(record), record.connectionId());
    EXPECT_EQ(copy->encode(), record.encode());
}

TEST(PostgresAdvancedSettings, writesWhatWasTypedAndLeavesTheRestAlone)
{
    const QMap<QString, QString> stored{{u"application_name"_qs, u"'it''s'"_qs},
                                        {u"search_path"_qs, u"'shop', 'Über, all'"_qs},
                                        {u"statement_timeout"_qs, u"30000"_qs},
                                        {u"TimeZone"_qs, u"UTC"_qs},
                                        {u"x.y"_qs, u"E'a\\\\b'"_qs}};
    const PostgresAdvancedSettings settings(stored);
    EXPECT_EQ(settings.timeZone(), u"UTC"_qs);
    QStringList shown;
    for (const auto &row : settings.rows())
        shown.append(row.name + u'=' + row.value);
    EXPECT_EQ(shown,
              (QStringList{u"application_name=it's"_qs, u"search_path=shop, \"Über, all\""_qs,
                           u"statement_timeout=30000"_qs, u"x.y=a\\b"_qs}));

    PostgresAdvancedSettings::Problem problem;
    auto unchanged = stored;
    unchanged.insert(u"timezone"_qs, unchanged.take(u"TimeZone"_qs));
    EXPECT_EQ(settings.parameters(u"UTC"_qs, settings.rows(), problem), unchanged);

    auto rows = settings.rows();
    rows[1].value = u"shop, public"_qs;
    rows.append(PostgresAdvancedSettings::Row());
    auto changed = unchanged;
    changed.insert(u"search_path"_qs, u"'shop', 'public'"_qs);
    changed.remove(u"timezone"_qs);
    EXPECT_EQ(settings.parameters(QString(), rows, problem), changed);

    for (const PostgresAdvancedSettings::Row &wrong :
         {PostgresAdvancedSettings::Row{u"work_mem"_qs, {}},
          {QString(), u"8MB"_qs},
          {u"no name"_qs, u"1"_qs},
          {u"timezone"_qs, u"UTC"_qs},
          {u"X.Y"_qs, u"1"_qs}}) {
        rows.last() = wrong;
        problem = {};
        EXPECT_FALSE(settings.parameters(QString(), rows, problem)) << qPrintable(wrong.name);
        EXPECT_EQ(problem.row, rows.size() - 1);
        EXPECT_FALSE(problem.text.isEmpty());
    }
    EXPECT_FALSE(settings.parameters(u"it's"_qs, {}, problem));
    EXPECT_EQ(problem.row, -1);
}

TEST(PostgresAdvancedSettings, takesOnlyParametersThatLibpqTakes)
{
    using Settings = PostgresAdvancedSettings;
    const QMap<QString, QString> stored{{u"connect_timeout"_qs, u"10"_qs},
                                        {u"krbsrvname"_qs, u"it's"_qs}};
    const Settings::Row first{u"connect_timeout"_qs, u"10"_qs};
    Settings::Problem problem;
    EXPECT_EQ(Settings::connectionParameters(Settings::rowsOf(stored), problem), stored);
    EXPECT_EQ(
        Settings::connectionParameters(
            {{u" Connect_Timeout"_qs, u"10 "_qs}, {}, {u"krbsrvname"_qs, u"it's"_qs}}, problem),
        stored);
    const struct
    {
        Settings::Row row;
        QString says;
    } cases[] = {
        {{u"colour"_qs, u"red"_qs}, u"\"colour\""_qs},
        {{u"host"_qs, u"h"_qs}, u"fields"_qs},
        {{u"application_name"_qs, u"a"_qs}, u"session parameters"_qs},
        {{u"sslpassword"_qs, u"p"_qs}, u"cannot carry"_qs},
        {{u"connect_timeout"_qs, u"11"_qs}, u"twice"_qs},
        {{u"keepalives_idle"_qs, u"long"_qs}, u"\"long\""_qs},
        {{u"target_session_attrs"_qs, u"some"_qs}, u"\"some\""_qs},
        {{u"hostaddr"_qs, u"db.example"_qs}, u"\"db.example\""_qs},
        {{u"sslsni"_qs, {}}, u"lacks a value"_qs},
        {{{}, u"5"_qs}, u"lacks the name"_qs},
    };
    for (const auto &[row, says] : cases) {
        EXPECT_FALSE(Settings::connectionParameters({first, row}, problem)) << qPrintable(row.name);
        EXPECT_EQ(problem.row, 1);
        EXPECT_THAT(problem.text.toStdString(), testing::HasSubstr(says.toStdString()));
    }
}

} // namespace
