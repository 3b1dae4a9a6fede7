// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXTextJournal.h"

#include "support/DXWait.h"
#include "support/PrintQt.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace testing;

namespace
{

class DXTextJournalTest : public Test
{
protected:
    std::unique_ptr<DXTextJournal> open() const
    {
        DXError error;
        auto journal = DXTextJournal::open(folder(), &error);
        EXPECT_TRUE(journal) << error.description().toStdString();
        return journal;
    }
    QString folder() const { return m_folder.filePath(u"journal"_qs); }
    QStringList texts() const
    {
        QStringList found;
        for (QDirIterator files(folder(), {u"*.text*"_qs}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();)
            found += files.next();
        return found;
    }
    static DXTextRecord record(const QString &id, const QString &text)
    {
        return {.id = id, .title = u"T"_qs, .text = text};
    }
    static void change(DXTextJournal &journal, const DXTextRecord &record)
    {
        journal.changed(record.id, [record] { return record; });
    }

    QTemporaryDir m_folder;
};

TEST_F(DXTextJournalTest, givesBackEverythingInOrder)
{
    const QList<DXTextRecord> records = {{.id = u"../b"_qs,
                                          .title = u"Ä \"1\""_qs,
                                          .filePath = u"/x/y.sql"_qs,
                                          .connectionId = u"c"_qs,
                                          .text = u"{\"id\":1}\r\n\nselect '😀'"_qs,
                                          .caret = 4,
                                          .isModified = true,
                                          .order = 1},
                                         {.id = u"a"_qs,
                                          .title = u""_qs,
                                          .filePath = {},
                                          .connectionId = {},
                                          .text = u""_qs,
                                          .caret = 0,
                                          .isModified = false,
                                          .order = 2}};
    auto journal = open();
    change(*journal, records[1]);
    change(*journal, record(u"../b"_qs, u"older"_qs));
    change(*journal, records[0]);
    change(*journal, record(u"gone"_qs, u"removed before it was written"_qs));
    journal->remove(u"gone"_qs);
    ASSERT_TRUE(DXWait::until([&] { return texts().size() == 2; }));
    for (const QString &text : texts())
        EXPECT_EQ(QFile::permissions(text) & ~(QFile::ReadUser | QFile::WriteUser),
                  QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_TRUE(journal->flush(nullptr));
    journal = nullptr;
    journal = open();
    EXPECT_EQ(journal->records(), records);
    journal->remove(u"a"_qs);
    EXPECT_TRUE(DXWait::until([&] { return texts().size() == 1; }));
}

TEST_F(DXTextJournalTest, bringsBackTheTextOfAKilledProgram)
{
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(QStringLiteral(DX_JOURNAL_WRITER), {folder()});
    ASSERT_TRUE(DXWait::until([&] { return !texts().isEmpty(); }));
    {
        // As long as it runs, its texts are its own.
        const auto mine = open();
        EXPECT_THAT(mine->records(), IsEmpty());
        change(*mine, record(u"mine"_qs, u"m"_qs));
        EXPECT_TRUE(mine->flush(nullptr));
    }
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    const auto journal = open();
    ASSERT_EQ(journal->records().size(), 2);
    const auto &killed = journal->records().at(journal->records()[0].id == u"killed" ? 0 : 1);
    EXPECT_GT(killed.caret, 0);
    QString whole;
    for (qsizetype i = 0; i < killed.caret; ++i)
        whole += u"select 'ä' || %1;\n"_qs.arg(i);
    EXPECT_EQ(killed.text, whole);
    EXPECT_THAT(journal->unreadFiles(), IsEmpty());
}

TEST_F(DXTextJournalTest, triesAgainWhatItCouldNotWrite)
{
    auto journal = open();
    QStringList failures;
    journal->setFailureHandler([&](const DXError &error) { failures += error.description(); });
    change(*journal, record(u"a"_qs, u"before"_qs));
    EXPECT_TRUE(journal->flush(nullptr));

    const QString part = QFileInfo(texts().value(0)).path();
    ASSERT_TRUE(QFile::rename(part, part + u"-away"_qs));
    QFile obstacle(part);
    ASSERT_TRUE(obstacle.open(QFile::WriteOnly));
    change(*journal, record(u"a"_qs, u"after"_qs));
    ASSERT_TRUE(DXWait::until([&] { return failures.size() == 1; }));
    EXPECT_TRUE(failures[0].contains(u"\"T\"") && failures[0].contains(part));
    EXPECT_FALSE(journal->flush(nullptr));
    obstacle.remove();
    ASSERT_TRUE(QFile::rename(part + u"-away"_qs, part));
    // Nobody has to type again for it to be written.
    ASSERT_TRUE(DXWait::until([&] { return failures.size() == 2; }));
    EXPECT_EQ(failures[1], QString());
    journal = nullptr;
    EXPECT_THAT(open()->records(), ElementsAre(record(u"a"_qs, u"after"_qs)));
}

TEST_F(DXTextJournalTest, leavesWhatItCannotRead)
{
    {
        const auto journal = open();
        change(*journal, record(u"a"_qs, u"text"_qs));
        EXPECT_TRUE(journal->flush(nullptr));
    }
    QFile damaged(QFileInfo(texts().value(0)).dir().filePath(u"damaged.text"_qs));
    ASSERT_TRUE(damaged.open(QFile::WriteOnly));
    damaged.write("no head");
    damaged.close();
    const auto journal = open();
    EXPECT_EQ(journal->records().size(), 1);
    EXPECT_THAT(journal->unreadFiles(), ElementsAre(damaged.fileName()));
    EXPECT_TRUE(damaged.exists());

    DXError error;
    EXPECT_FALSE(DXTextJournal::open(damaged.fileName(), &error));
    EXPECT_TRUE(error.description().contains(damaged.fileName()));
}

} // namespace
