// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliGridWriter.h"

#include "cli/output/CliGrid.h"
#include "cli/output/CliOutput.h"
#include "cli/output/CliTableWriter.h"

#include <QTemporaryFile>

#include <QList>

#include <gmock/gmock.h>

#include <csignal>

#include <cerrno>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

using namespace testing;
using namespace Qt::StringLiterals;

namespace
{

enum Type : quint32 { TextType, IntegerType, DecimalType, BooleanType };

DXValue convert(quint32 type, QByteArrayView bytes)
{
    switch (type) {
    case IntegerType:
        return DXValue(DXValue::leadingInteger(bytes));
    case DecimalType:
        return DXValue(*DXDecimal::fromString(bytes));
    case BooleanType:
        return DXValue(bytes == "t" ? u"True"_qs : u"False"_qs);
    default:
        return bytes.isValidUtf8() ? DXValue(QString::fromUtf8(bytes)) : DXValue();
    }
}

using Row = std::vector<std::optional<std::string>>;

std::shared_ptr<DXQueryResultDetails> details(const QStringList &names, const QList<quint32> &types,
                                              const std::vector<Row> &rows)
{
    const auto made = std::make_shared<DXQueryResultDetails>(&convert);
    made->setColumnNames(names);
    made->setColumnTypes(types);
    made->setRows(std::make_shared<DXRowStore>(static_cast<quint32>(names.size())));
    for (const Row &row : rows)
        made->rows()->appendRow([&row](quint32 column) {
            const auto &cell = row[column];
            return cell ? DXRowStore::Cell{cell->data(), static_cast<qsizetype>(cell->size())}
                        : DXRowStore::Cell{};
        });
    made->addRows();
    return made;
}

class CliGridWriterTest : public Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_file.open()); }

    std::string print(CliFormat format, const QList<std::shared_ptr<DXQueryResultDetails>> &grids,
                      CliGridWriter::Header header = CliGridWriter::Header::Yes)
    {
        CliOutput output(m_file.handle());
        const auto writer = CliGridWriter::create(format, header, output);
        for (const auto &each : grids) {
            CliGrid grid(each);
            writer->begin(grid);
            for (qsizetype row = 0; row < grid.rowCount(); ++row)
                writer->writeRow(grid, row);
            writer->end(grid);
        }
        output.flush();
        EXPECT_EQ(output.failure(), 0);
        m_file.seek(0);
        return m_file.readAll().toStdString();
    }

    // Every kind of cell, also those that a format has to treat with care.
    const std::shared_ptr<DXQueryResultDetails> m_mixed =
        details({u"id"_qs, u"na,me"_qs, u"amount"_qs, u"yes"_qs},
                {IntegerType, TextType, DecimalType, BooleanType},
                {{"1", "plain", "1.50", "t"},
                 {"-20", "a,\"b\"\n\tc\\", "12345678901234567890.1", "f"},
                 {std::nullopt, "", "NaN", std::nullopt},
                 {"9007199254740993", "漢\x1b[31m", std::nullopt, "t"}});
    QTemporaryFile m_file;
};

TEST_F(CliGridWriterTest, TableAlignsByDisplayWidthAndType)
{
    EXPECT_EQ(print(CliFormat::Table, {m_mixed}),
              "               id | na,me       |                 amount | yes\n"
              "------------------+-------------+------------------------+-------\n"
              "                1 | plain       |                   1.50 | True\n"
              "              -20 | a,\"b\"\\n\\tc\\ | 12345678901234567890.1 | False\n"
              "             NULL |             |                    NaN | NULL\n"
              " 9007199254740993 | 漢\\x1B[31m  |                   NULL | True\n");
}

TEST_F(CliGridWriterTest, CsvQuotesAndTellsNullFromEmpty)
{
    EXPECT_EQ(print(CliFormat::Csv, {m_mixed}),
              "id,\"na,me\",amount,yes\n"
              "1,plain,1.50,True\n"
              "-20,\"a,\"\"b\"\"\n\tc\\\",12345678901234567890.1,False\n"
              ",\"\",NaN,\n"
              "9007199254740993,漢\x1b[31m,,True\n");
}

TEST_F(CliGridWriterTest, TsvEscapesAndTellsNullFromEmpty)
{
    EXPECT_EQ(print(CliFormat::Tsv, {m_mixed}, CliGridWriter::Header::No),
              "1\tplain\t1.50\tTrue\n"
              "-20\ta,\"b\"\\n\\tc\\\\\t12345678901234567890.1\tFalse\n"
              "\\N\t\tNaN\t\\N\n"
              "9007199254740993\t漢\x1b[31m\t\\N\tTrue\n");
}

TEST_F(CliGridWriterTest, JsonKeepsKindsAndDigits)
{
    EXPECT_EQ(
        print(CliFormat::JsonLines, {m_mixed}),
        "{\"id\":1,\"na,me\":\"plain\",\"amount\":1.50,\"yes\":true}\n"
        "{\"id\":-20,\"na,me\":\"a,\\\"b\\\"\\n\\tc\\\\\",\"amount\":12345678901234567890.1,"
        "\"yes\":false}\n"
        "{\"id\":null,\"na,me\":\"\",\"amount\":\"NaN\",\"yes\":null}\n"
        "{\"id\":9007199254740993,\"na,me\":\"漢\\u001b[31m\",\"amount\":null,\"yes\":true}\n");
}

TEST_F(CliGridWriterTest, JsonGivesEveryColumnAMember)
{
    const auto same = details({u"n"_qs, u"n"_qs, u"n_2"_qs, u"n"_qs},
                              {TextType, TextType, TextType, TextType}, {{"a", "b", "c", "d"}});
    EXPECT_EQ(print(CliFormat::JsonLines, {same}),
              "{\"n\":\"a\",\"n_3\":\"b\",\"n_2\":\"c\",\"n_4\":\"d\"}\n");
}

TEST_F(CliGridWriterTest, TextThatIsNoUtf8IsNoNull)
{
    const auto broken = details({u"t"_qs}, {TextType}, {{"a\xff"}});
    EXPECT_EQ(print(CliFormat::JsonLines, {broken, broken}),
              "{\"t\":\"a\ufffd\"}\n{\"t\":\"a\ufffd\"}\n");
}

TEST_F(CliGridWriterTest, TextsThatLookLikeBooleansStayTexts)
{
    const auto letters = details({u"t"_qs}, {TextType}, {{"t"}, {"True"}, {"f"}});
    EXPECT_EQ(print(CliFormat::JsonLines, {letters}),
              "{\"t\":\"t\"}\n{\"t\":\"True\"}\n{\"t\":\"f\"}\n");
}

TEST_F(CliGridWriterTest, GridsStandApartAlsoWithoutRows)
{
    const auto empty = details({u"a"_qs}, {IntegerType}, {});
    EXPECT_EQ(print(CliFormat::Csv, {empty, empty}), "a\n\na\n");
}

TEST_F(CliGridWriterTest, TableFitsColumnsToItsFirstRowsAndCutsNothing)
{
    std::vector<Row> rows(CliTableWriter::windowRows, Row{"ab", "c"});
    rows.push_back({"wider than those", "d"});
    rows.push_back({"e", "f"});
    const std::string huge(300, 'x');
    rows.front() = {huge, "g"};
    const std::string table =
        print(CliFormat::Table, {details({u"t"_qs, u"u"_qs}, {TextType, TextType}, rows)});
    const std::string blanks(CliTableWriter::widestColumn - 1, ' ');
    EXPECT_THAT(table, StartsWith(" t" + blanks + " | u\n"));
    EXPECT_THAT(table, HasSubstr("\n " + huge + " | g\n"));
    EXPECT_THAT(table, EndsWith("\n e" + blanks + " | f\n"));
}

TEST(CliOutput, RemembersThatNobodyReads)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    const auto before = ::signal(SIGPIPE, SIG_IGN);
    CliOutput output(ends[1]);
    output.write("x");
    EXPECT_EQ(output.failure(), 0);
    output.flush();
    EXPECT_EQ(output.failure(), EPIPE);
    output.write(QByteArray(1'000'000, 'x'));
    ::close(ends[1]);
    ::signal(SIGPIPE, before);
}

} // namespace
