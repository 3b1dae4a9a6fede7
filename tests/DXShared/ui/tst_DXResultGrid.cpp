// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DXWait.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultModel.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>
#include <thread>

using DXResultText::Format;

namespace
{

enum ColumnType : quint32 { Text, Number, Bytes };

DXValue convert(quint32 type, QByteArrayView bytes)
{
    if (type == Number)
        return *DXDecimal::fromString(bytes);
    if (type == Bytes)
        return bytes.toByteArray();
    return QString::fromUtf8(bytes);
}

class DXResultGridTest : public testing::Test
{
protected:
    DXResultGridTest()
    {
        details->setColumnNames({u"id"_qs, u"na\"me"_qs, u"data"_qs});
        details->setColumnTypes({Number, Text, Bytes});
        details->setRows(std::make_shared<DXRowStore>(3));
    }

    using Row = std::array<std::optional<QByteArray>, 3>;
    void append(const Row &row)
    {
        details->rows()->appendRow([&](quint32 column) {
            const auto &cell = row[column];
            return cell ? DXRowStore::Cell{cell->constData() ? cell->constData() : "", cell->size()}
                        : DXRowStore::Cell{};
        });
    }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }

    std::shared_ptr<DXQueryResultDetails> details =
        std::make_shared<DXQueryResultDetails>(&convert);
};

TEST_F(DXResultGridTest, followsRowsWhileAnotherThreadAddsThem)
{
    DXResultModel model(details);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);
    constexpr int rows = 200'000;
    std::jthread reader([&] {
        for (int row = 0; row < rows; ++row) {
            append({QByteArray::number(row), QByteArray("row"), std::nullopt});
            if (row % 100 == 0)
                details->addRows();
        }
        details->addRows();
        details->setFinished(true);
    });
    EXPECT_TRUE(DXWait::until([&] { return model.rowCount() == rows; })) << model.rowCount();
    EXPECT_LT(insertions.count(), rows / 100) << "every hand-over was inserted by itself";
    EXPECT_EQ(model.index(rows - 1, 0).data().toString(), QString::number(rows - 1));
}

TEST_F(DXResultGridTest, tellsKindsOfCellsApart)
{
    append({QByteArray("-1.50"), QByteArray("NULL"), QByteArray("\\x00ff")});
    append({std::nullopt, QByteArray(""), QByteArray("\x01", 1)});
    append({QByteArray("2"), QByteArray("two\nlines\t") + QByteArray(2000, 'x'), std::nullopt});
    details->addRows();
    details->setFinished(true);
    const DXResultModel model(details);
    const auto shown = [&](int row, int column) {
        const QModelIndex index = model.index(row, column);
        return index.data().toString()
               + (index.data(DXResultModel::NullRole).toBool() ? u"!"_qs : u""_qs);
    };
    EXPECT_EQ(shown(0, 0), u"-1.50"_qs);
    EXPECT_EQ(shown(0, 1), u"NULL"_qs);
    EXPECT_EQ(shown(0, 2), u"\\x00ff"_qs);
    EXPECT_EQ(shown(1, 0), u"NULL!"_qs);
    EXPECT_EQ(shown(1, 1), QString(u""_qs));
    EXPECT_EQ(shown(1, 2), u"\\x01"_qs);
    EXPECT_TRUE(shown(2, 1).startsWith(u"two\u2424lines x"_qs));
    EXPECT_EQ(shown(2, 1).size(), DXResultModel::shownCharacters);
    const auto isRight = [&](const QVariant &alignment) {
        return (alignment.toInt() & Qt::AlignRight) != 0;
    };
    EXPECT_TRUE(isRight(model.index(0, 0).data(Qt::TextAlignmentRole)));
    EXPECT_FALSE(isRight(model.index(0, 1).data(Qt::TextAlignmentRole)));
    EXPECT_TRUE(isRight(model.headerData(0, Qt::Horizontal, Qt::TextAlignmentRole)));
}

TEST_F(DXResultGridTest, copiesTheSelectionInEveryFormat)
{
    append({QByteArray("1"), QByteArray("a\tb, \"c\""), QByteArray("\\x00")});
    append({QByteArray("2"), std::nullopt, QByteArray("\\x01")});
    append({QByteArray("NaN"), QByteArray(""), std::nullopt});
    details->addRows();
    details->setFinished(true);
    DXResultGrid grid(details);
    grid.selectionModel()->select({grid.model()->index(0, 0), grid.model()->index(2, 1)},
                                  QItemSelectionModel::ClearAndSelect);
    grid.copy(Format::Tsv);
    EXPECT_EQ(clipboard(), u"1\ta\\tb, \"c\"\n2\t\\N\nNaN\t\n"_qs);
    grid.copy(Format::Csv);
    EXPECT_EQ(clipboard(), u"id,\"na\"\"me\"\n1,\"a\tb, \"\"c\"\"\"\n2,\nNaN,\"\"\n"_qs);
    grid.copy(Format::Json);
    EXPECT_EQ(clipboard(), u"[\n  {\"id\": 1, \"na\\\"me\": \"a\\tb, \\\"c\\\"\"},\n"
                           "  {\"id\": 2, \"na\\\"me\": null},\n"
                           "  {\"id\": \"NaN\", \"na\\\"me\": \"\"}\n]\n"_qs);
    grid.copy(Format::Insert, {.tableName = u"shop.t"_qs,
                               .escapeName = [](const QString &name) { return u'<' + name + u'>'; },
                               .escapeValue =
                                   [](const DXValue &value) {
                                       return value.isNull() ? u"NULL"_qs
                                                             : u'[' + value.toText() + u']';
                                   }});
    EXPECT_TRUE(clipboard().startsWith(
        u"INSERT INTO shop.t (<id>, <na\"me>) VALUES ([1], [a\tb, \"c\"]);\n"_qs))
        << qPrintable(clipboard());
    EXPECT_TRUE(clipboard().contains(u"VALUES ([2], NULL);\n"));

    grid.setCurrentIndex(grid.model()->index(0, 1));
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), u"a\tb, \"c\""_qs);
    const QSignalSpy requests(&grid, &DXResultGrid::valueRequested);
    QTest::keyClick(&grid, Qt::Key_Return);
    EXPECT_EQ(requests.count(), 1);
}

TEST_F(DXResultGridTest, fitsColumnsToWhatCameFirst)
{
    DXResultGrid grid(details);
    const int before = grid.columnWidth(1);
    append({QByteArray("1"), QByteArray("quite a long text for a column"), std::nullopt});
    append({QByteArray("2"), QByteArray(5000, 'x'), std::nullopt});
    details->addRows();
    grid.resultModel().update();
    const int fitted = grid.columnWidth(1);
    EXPECT_GT(fitted, before);
    EXPECT_LT(fitted, 400);
    append({QByteArray("1234567890123456789012345678901234567890"), QByteArray("x"), std::nullopt});
    details->addRows();
    const int narrow = grid.columnWidth(0);
    grid.resultModel().update();
    EXPECT_EQ(grid.columnWidth(0), narrow);
}

} // namespace
