// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Proves scripts by running them; tests/sql/scripts/README tells how.
#include "DabroPostgres/driver/ServerAccess.h"
#include "DabroPostgres/scripts/ScriptFile.h"
#include "DabroPostgres/scripts/ScriptReceiver.h"
#include "scripts/PostgresScriptCatalogue.h"
#include "support/Background.h"
#include "support/PrintQt.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <gmock/gmock.h>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

const QDir folder(QStringLiteral(DX_SQL_FOLDER "/scripts"));

/// A database of the shared server with what scripts make of it.
class Database final
{
public:
    explicit Database(const QString &name)
    {
        PostgresCluster::shared().createDatabase(name);
        m_record = ServerAccess::record(PostgresCluster::shared(), name);
        m_client = ServerAccess::connected(m_record);
    }

    QString script(const ScriptFile::Script &of) const
    {
        return inBackground([&] { return ScriptReceiver::script(of, *m_record); });
    }
    /// Runs script as a user would; what it left open is rolled back.
    DXError run(const QString &script)
    {
        const DXError error = ServerAccess::errorOf(*m_client, script);
        if (m_client->isInTransaction())
            ServerAccess::errorOf(*m_client, u"ROLLBACK"_s);
        return error;
    }
    void expectToRun(const QString &script)
    {
        SCOPED_TRACE(script.toStdString());
        const DXError error = run(script);
        EXPECT_FALSE(error) << qPrintable(error.description());
    }
    QStringList snapshot()
    {
        QFile query(folder.filePath(u"snapshot.sql"_s));
        EXPECT_TRUE(query.open(QIODevice::ReadOnly));
        QStringList lines = ServerAccess::scalar(*m_client, QString::fromUtf8(query.readAll()))
                                .split(u'\n', Qt::SkipEmptyParts);
        lines.sort();
        return lines;
    }

private:
    ServerAccess::Record m_record;
    std::unique_ptr<PostgresDatabaseClient> m_client;
};

std::string without(const QStringList &lines, const QStringList &others)
{
    QStringList left;
    std::set_difference(lines.begin(), lines.end(), others.begin(), others.end(),
                        std::back_inserter(left));
    return left.join(u'\n').toStdString();
}

void expectSame(const QStringList &before, const QStringList &after, const ScriptFile::Script &why)
{
    const std::string name = (why.kind + u' ' + why.script + u' ' + why.object).toStdString();
    EXPECT_EQ(without(before, after), "") << "is gone after " << name;
    EXPECT_EQ(without(after, before), "") << "has come after " << name;
}

QStringList scriptsOf(const QString &kind)
{
    const auto kinds = PostgresScriptCatalogue().kinds();
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const auto &each) { return each.name == kind; });
    return found == kinds.end() ? QStringList() : found->scripts;
}

class ScriptsOf : public TestWithParam<QString>
{
protected:
    void runStep(const ScriptFile::Step &step)
    {
        if (step.verb == "copy"_L1 || step.verb == "make"_L1) {
            m_copy.expectToRun(m_source.script(step.script));
            return;
        }
        const QStringList before = m_source.snapshot();
        const DXError error = m_source.run(m_source.script(step.script));
        const QStringList after = m_source.snapshot();
        const std::string name =
            (step.verb + u' ' + step.script.kind + u' ' + step.script.object).toStdString();
        if (step.verb == "refuse"_L1)
            EXPECT_THAT(error.description().toStdString(), HasSubstr(step.message.toStdString()))
                << name;
        else
            EXPECT_FALSE(error) << name << '\n' << qPrintable(error.description());
        if (step.verb != "remove"_L1) {
            expectSame(before, after, step.script);
            return;
        }
        EXPECT_NE(without(before, after), "") << name;
        EXPECT_EQ(without(after, before), "") << name;
    }
    /// Drops what was copied and creates it again, then drops it for good.
    void dropAndCreate(ScriptFile::Script script)
    {
        const QString create = m_copy.script(script);
        const QStringList before = m_copy.snapshot();
        script.script = u"drop-and-create"_s;
        if (scriptsOf(script.kind).contains(script.script)) {
            m_copy.expectToRun(m_copy.script(script));
            expectSame(before, m_copy.snapshot(), script);
        }
        script.script = u"drop"_s;
        const QString drop = m_copy.script(script);
        m_copy.expectToRun(drop);
        const QStringList dropped = m_copy.snapshot();
        EXPECT_NE(without(before, dropped), "") << qPrintable(drop);
        m_copy.expectToRun(create);
        expectSame(before, m_copy.snapshot(), script);
        m_copy.expectToRun(drop);
        expectSame(dropped, m_copy.snapshot(), script);
    }

    const QString m_number = QString::number(m_count++);
    Database m_source{u"source"_s + m_number};
    Database m_copy{u"copy"_s + m_number};

private:
    static inline int m_count = 0;
};

TEST_P(ScriptsOf, DoWhatTheySay)
{
    const ScriptFile file = ScriptFile::read(folder.filePath(GetParam()));
    m_source.expectToRun(file.both);
    m_source.expectToRun(file.objects);
    m_copy.expectToRun(file.both);
    ASSERT_FALSE(HasFailure());
    const QStringList bare = m_copy.snapshot();

    for (const ScriptFile::Text &text : file.texts)
        EXPECT_EQ(ScriptFile::shown(m_source.script(text.script)).toStdString(),
                  text.text.toStdString());
    const auto firstOther =
        std::find_if(file.steps.begin(), file.steps.end(), [](const auto &step) {
            return step.verb != "copy"_L1 && step.verb != "make"_L1;
        });
    std::for_each(file.steps.begin(), firstOther, [this](const auto &step) { runStep(step); });
    if (firstOther != file.steps.begin()) {
        EXPECT_EQ(without(m_source.snapshot(), m_copy.snapshot()),
                  file.lost.join(u'\n').toStdString());
        EXPECT_EQ(without(m_copy.snapshot(), m_source.snapshot()),
                  file.gained.join(u'\n').toStdString());
    }
    bool isBare = true;
    for (auto step = std::make_reverse_iterator(firstOther); step != file.steps.rend(); ++step) {
        isBare = isBare && step->verb == "copy"_L1;
        if (step->verb == "copy"_L1)
            dropAndCreate(step->script);
    }
    if (isBare)
        expectSame(bare, m_copy.snapshot(), {});
    std::for_each(firstOther, file.steps.end(), [this](const auto &step) { runStep(step); });
}

std::vector<QString> files()
{
    const QStringList names = folder.entryList({u"*.test"_s}, QDir::Files, QDir::Name);
    return {names.begin(), names.end()};
}

INSTANTIATE_TEST_SUITE_P(Files, ScriptsOf, ValuesIn(files()), [](const auto &parameter) {
    return QString(parameter.param).remove(u".test"_s).remove(u'-').toStdString();
});

} // namespace
