// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "support/Widgets.h"
#include "ui/results/DXResultOutput.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <optional>

#include <sys/resource.h>

using DXResultText::Format;
using Outcome = DXResultTask::Outcome;

namespace
{

DXValue convert(quint32 type, QByteArrayView bytes)
{
    Q_UNUSED(type)
    return QString::fromUtf8(bytes);
}

/// Files of this process cannot grow beyond a size, as on a disk that is full.
class FileSizeLimit final
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_before([] {
            rlimit limit{};
            ::getrlimit(RLIMIT_FSIZE, &limit);
            return limit;
        }())
        , m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

    const rlimit m_before;
    void (*const m_handler)(int);
};

class DXResultOutputTest : public testing::Test
{
protected:
    DXResultOutputTest()
    {
        result->setColumnNames({u"n"_qs});
        result->setColumnTypes({0});
        result->setRows(std::make_shared<DXRowStore>(1));
        QGuiApplication::clipboard()->setText(u"before"_qs);
        outer.resize(600, 100);
        outer.show();
        QObject::connect(output.get(), &DXResultOutput::ended, &outer,
                         [this](Outcome outcome, const QString &message) {
                             ends.append({outcome, message});
                         });
    }

    void append(int rows, const QByteArray &cell = "value")
    {
        for (int row = 0; row < rows; ++row)
            result->rows()->appendRow([&](quint32) {
                return DXRowStore::Cell{cell.constData(), cell.size()};
            });
        result->addRows();
    }
    void finish(const std::optional<QString> &failure = {})
    {
        result->setMessages({failure ? DXQueryMessage{*failure, DXMessageColor::Red}
                                     : DXQueryMessage{u"done"_qs, DXMessageColor::Black}});
        result->setFinished(true);
    }
    DXResultArea all() const { return DXResultArea::all(result->rows()->rowCount(), {0}); }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
    bool hasEnded(int count = 1) const
    {
        return DXWait::until([this, count] { return ends.size() == count; });
    }
    static qsizetype linesIn(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll().count('\n') : -1;
    }

    struct End
    {
        Outcome outcome;
        QString message;
    };
    const std::shared_ptr<DXQueryResultDetails> result =
        std::make_shared<DXQueryResultDetails>(&convert);
    QWidget outer;
    std::unique_ptr<DXResultOutput> output = std::make_unique<DXResultOutput>(&outer);
    QList<End> ends;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"rows.csv"_qs);
};

TEST_F(DXResultOutputTest, copiesLittleAtOnceAndMuchBehind)
{
    append(10'000);
    output->copy(result, Format::Tsv, all());
    EXPECT_FALSE(output->isBusy());
    EXPECT_EQ(clipboard().size(), 60'000);
    append(190'000);
    output->copy(result, Format::Tsv, all());
    EXPECT_TRUE(output->isBusy());
    EXPECT_EQ(clipboard().size(), 60'000) << "the main thread copied it";
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(clipboard().size(), 1'200'000);
    EXPECT_EQ(ends[0].outcome, Outcome::Done);
    EXPECT_EQ(ends[0].message, u"200,000 rows copied."_qs);
    EXPECT_FALSE(output->isBusy());
}

TEST_F(DXResultOutputTest, copiesFewButLargeCellsBehind)
{
    append(5, QByteArray(1'000'000, 'x'));
    output->copy(result, Format::Csv, all());
    EXPECT_TRUE(output->isBusy());
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(clipboard().size(), 5'000'007);
}

TEST_F(DXResultOutputTest, leavesTheClipboardToWhatWasCopiedLast)
{
    append(300'000);
    const auto begin = [this] { output->copy(result, Format::Csv, all()); };
    begin();
    output->cancel();
    ASSERT_TRUE(hasEnded(1));
    EXPECT_EQ(clipboard(), u"before"_qs);

    begin();
    QGuiApplication::clipboard()->setText(u"typed later"_qs);
    ASSERT_TRUE(hasEnded(2));
    EXPECT_EQ(clipboard(), u"typed later"_qs);

    begin();
    DXResultOutput other;
    other.copy(result, Format::Tsv, all());
    ASSERT_TRUE(hasEnded(3));
    EXPECT_EQ(clipboard(), u"typed later"_qs);
    EXPECT_TRUE(DXWait::until([&] { return !other.isBusy(); }));
    EXPECT_EQ(clipboard().size(), 1'800'000);
    for (const End &end : std::as_const(ends))
        EXPECT_EQ(end.message, u"Copying was cancelled."_qs);

    finish();
    begin();
    output.reset();
    other.saveCsv(result, path);
    EXPECT_TRUE(DXWait::until([&] { return !other.isBusy(); }));
    EXPECT_EQ(clipboard().size(), 1'800'000) << "of a tab that was closed";
}

TEST_F(DXResultOutputTest, refusesWhatNoClipboardHolds)
{
    append(1000);
    std::optional<Outcome> outcome;
    QString message;
    DXResultTask::copy(
        result, Format::Tsv, all(), {},
        [&](Outcome how, const QString &text) {
            outcome = how;
            message = text;
        },
        5999);
    ASSERT_TRUE(DXWait::until([&] { return outcome.has_value(); }));
    EXPECT_EQ(outcome, Outcome::Failed);
    EXPECT_THAT(message.toStdString(), testing::HasSubstr("Save the result as CSV instead."));
    EXPECT_EQ(clipboard(), u"before"_qs);
}

TEST_F(DXResultOutputTest, savesWhatIsStillToArrive)
{
    append(1500);
    output->saveCsv(result, path);
    const auto *const label = output->findChild<QLabel *>();
    EXPECT_TRUE(DXWait::until([&] {
        return label->text() == u"Saving to rows.csv: 1,500 rows"_qs;
    })) << qPrintable(label->text());
    EXPECT_TRUE(output->isVisible());
    append(2000);
    EXPECT_TRUE(DXWait::until([&] { return label->text().contains(u"3,500 rows"_qs); }));
    EXPECT_TRUE(ends.isEmpty());
    append(10);
    finish();
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(ends[0].outcome, Outcome::Done);
    EXPECT_EQ(ends[0].message, u"3,510 rows saved to %1."_qs.arg(path));
    EXPECT_EQ(linesIn(path), 3511);
    EXPECT_FALSE(output->isVisible());
}

TEST_F(DXResultOutputTest, saysWhenAFileIsNotTheWholeResult)
{
    append(7);
    output->saveCsv(result, path);
    finish(u"canceling statement due to user request"_qs);
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(ends[0].outcome, Outcome::Incomplete);
    EXPECT_THAT(ends[0].message.toStdString(),
                testing::HasSubstr("Only what had arrived, 7 rows, was saved"));
    EXPECT_EQ(linesIn(path), 8);
}

TEST_F(DXResultOutputTest, keepsTheFileThatWasThereUnlessAllWentWell)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("precious\n");
    file.close();
    append(7);
    output->saveCsv(result, path);
    EXPECT_TRUE(DXWait::until([this] { return output->isVisible(); }));
    Widgets::click<QPushButton>(output.get(), u"Cancel"_qs);
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(ends[0].outcome, Outcome::Cancelled);
    EXPECT_EQ(linesIn(path), 1);

    finish();
    output->saveCsv(result, folder.filePath(u"no/such/folder.csv"_qs));
    ASSERT_TRUE(hasEnded(2));
    EXPECT_EQ(ends[1].outcome, Outcome::Failed);
    EXPECT_THAT(ends[1].message.toStdString(), testing::HasSubstr("No such file or directory"));

    append(50'000);
    {
        const FileSizeLimit fullDisk(65'536);
        output->saveCsv(result, path);
        ASSERT_TRUE(hasEnded(3));
    }
    EXPECT_EQ(ends[2].outcome, Outcome::Failed) << qPrintable(ends[2].message);
    EXPECT_EQ(linesIn(path), 1);
}

TEST_F(DXResultOutputTest, finishesTheFileOfATabThatWasClosed)
{
    append(1500);
    output->saveCsv(result, path);
    output.reset();
    EXPECT_TRUE(DXWait::until([this] { return linesIn(path) == 1501; }));
}

} // namespace
