// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultModel.h"
#include "ui/results/DXResultOutput.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
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
    void finish()
    {
        details->addRows();
        details->setFinished(true);
    }
    /// From the first row and column to the last.
    struct Range
    {
        int top;
        int left;
        int bottom;
        int right;
    };
    static void select(DXResultGrid &grid, const QList<Range> &ranges)
    {
        grid.clearSelection();
        for (const auto &[top, left, bottom, right] : ranges)
            grid.selectionModel()->select(
                {grid.model()->index(top, left), grid.model()->index(bottom, right)},
                QItemSelectionModel::Select);
    }
    QString copied(const DXResultGrid &grid, Format format) const
    {
        DXResultOutput output;
        output.copy(details, format, grid.selectedArea(),
                    {.tableName = u"shop.t"_qs,
                     .escapeName = [](const QString &name) { return u'<' + name + u'>'; },
                     .escapeValue =
                         [](const DXValue &value) {
                             return value.isNull() ? u"NULL"_qs
                                                   : u'[' + DXResultText::textOf(value) + u']';
                         }});
        return QGuiApplication::clipboard()->text();
    }

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
    append({QByteArray("3"), QByteArray("a\rb\u2028c\x1B") + "d", std::nullopt});
    append({QByteArray("4"), "x" + QByteArray("\U0001F375").repeated(600), std::nullopt});
    finish();
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
    EXPECT_EQ(shown(3, 1), u"a\u240Db\u2424c\u241Bd"_qs);
    EXPECT_EQ(shown(4, 1).size(), DXResultModel::shownCharacters - 1) << "half of a character";
    const auto isRight = [&](const QVariant &alignment) {
        return (alignment.toInt() & Qt::AlignRight) != 0;
    };
    EXPECT_TRUE(isRight(model.index(0, 0).data(Qt::TextAlignmentRole)));
    EXPECT_TRUE(isRight(model.index(1, 0).data(Qt::TextAlignmentRole))) << "NULL among numbers";
    EXPECT_FALSE(isRight(model.index(0, 1).data(Qt::TextAlignmentRole)));
    EXPECT_TRUE(isRight(model.headerData(0, Qt::Horizontal, Qt::TextAlignmentRole)));
}

TEST_F(DXResultGridTest, copiesTheSelectionInEveryFormat)
{
    append({QByteArray("1"), QByteArray("a\tb, \"c\""), QByteArray("\\x00")});
    append({QByteArray("2"), std::nullopt, QByteArray("\\x01")});
    append({QByteArray("NaN"), QByteArray(""), std::nullopt});
    finish();
    DXResultGrid grid(details);
    select(grid, {{0, 0, 2, 1}});
    EXPECT_EQ(copied(grid, Format::Tsv), u"1\ta\\tb, \"c\"\n2\t\\N\nNaN\t\n"_qs);
    EXPECT_EQ(copied(grid, Format::Csv),
              u"id,\"na\"\"me\"\n1,\"a\tb, \"\"c\"\"\"\n2,\nNaN,\"\"\n"_qs);
    EXPECT_EQ(copied(grid, Format::Json), u"[\n  {\"id\": 1, \"na\\\"me\": \"a\\tb, \\\"c\\\"\"},\n"
                                          "  {\"id\": 2, \"na\\\"me\": null},\n"
                                          "  {\"id\": \"NaN\", \"na\\\"me\": \"\"}\n]\n"_qs);
    EXPECT_EQ(copied(grid, Format::Insert),
              u"INSERT INTO shop.t (<id>, <na\"me>) VALUES ([1], [a\tb, \"c\"]);\n"
              "INSERT INTO shop.t (<id>, <na\"me>) VALUES ([2], NULL);\n"
              "INSERT INTO shop.t (<id>, <na\"me>) VALUES ([NaN], []);\n"_qs);

    grid.setCurrentIndex(grid.model()->index(0, 1));
    EXPECT_EQ(copied(grid, Format::Tsv), u"a\tb, \"c\""_qs);
    const QSignalSpy copies(&grid, &DXResultGrid::copyRequested);
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QMetaObject::invokeMethod(&grid, "copy")) << "which the menu does";
    EXPECT_EQ(copies.count(), 2);
    const QSignalSpy requests(&grid, &DXResultGrid::valueRequested);
    QTest::keyClick(&grid, Qt::Key_Return);
    EXPECT_EQ(requests.count(), 1);
}

TEST_F(DXResultGridTest, copiesWhatIsSelectedAndNothingElse)
{
    details->setColumnNames({u"id"_qs, u"name"_qs, u"more"_qs});
    details->setColumnTypes({Number, Text, Text});
    for (const char *const row : {"1", "2", "3", "4", "5", "6"})
        append({QByteArray(row), QByteArray("t") + row, QByteArray("b") + row});
    finish();
    DXResultGrid grid(details);
    const QList<Range> rows1And5{{0, 0, 0, 2}, {4, 0, 4, 2}};
    const struct
    {
        const char *what;
        bool isFirstColumnLast;
        QList<Range> selection;
        QString tsv;
        /// The columns of each statement, and its values.
        QList<std::pair<QString, QString>> inserts;
    } cases[] = {
        {"rows apart",
         false,
         rows1And5,
         u"1\tt1\tb1\n5\tt5\tb5\n"_qs,
         {{u"<id>, <name>, <more>"_qs, u"[1], [t1], [b1]"_qs},
          {u"<id>, <name>, <more>"_qs, u"[5], [t5], [b5]"_qs}}},
        {"the last row first",
         false,
         {rows1And5[1], rows1And5[0]},
         u"1\tt1\tb1\n5\tt5\tb5\n"_qs,
         {{u"<id>, <name>, <more>"_qs, u"[1], [t1], [b1]"_qs},
          {u"<id>, <name>, <more>"_qs, u"[5], [t5], [b5]"_qs}}},
        {"rows with a column moved",
         true,
         rows1And5,
         u"t1\tb1\t1\nt5\tb5\t5\n"_qs,
         {{u"<name>, <more>, <id>"_qs, u"[t1], [b1], [1]"_qs},
          {u"<name>, <more>, <id>"_qs, u"[t5], [b5], [5]"_qs}}},
        {"columns apart",
         false,
         {{1, 0, 2, 0}, {1, 2, 2, 2}},
         u"2\tb2\n3\tb3\n"_qs,
         {{u"<id>, <more>"_qs, u"[2], [b2]"_qs}, {u"<id>, <more>"_qs, u"[3], [b3]"_qs}}},
        {"cells on a slant",
         false,
         {{0, 0, 0, 0}, {2, 2, 2, 2}},
         u"1\t\n\tb3\n"_qs,
         {{u"<id>"_qs, u"[1]"_qs}, {u"<more>"_qs, u"[b3]"_qs}}},
        {"a rectangle and a cell beside it",
         false,
         {{0, 0, 2, 1}, {1, 2, 1, 2}},
         u"1\tt1\t\n2\tt2\tb2\n3\tt3\t\n"_qs,
         {{u"<id>, <name>"_qs, u"[1], [t1]"_qs},
          {u"<id>, <name>, <more>"_qs, u"[2], [t2], [b2]"_qs},
          {u"<id>, <name>"_qs, u"[3], [t3]"_qs}}},
        {"a cell twice",
         false,
         {{0, 0, 1, 0}, {1, 0, 2, 0}},
         u"1\n2\n3\n"_qs,
         {{u"<id>"_qs, u"[1]"_qs}, {u"<id>"_qs, u"[2]"_qs}, {u"<id>"_qs, u"[3]"_qs}}},
        {"cells of a moved column",
         true,
         {{0, 0, 0, 0}, {1, 1, 1, 1}},
         u"\t1\nt2\t\n"_qs,
         {{u"<id>"_qs, u"[1]"_qs}, {u"<name>"_qs, u"[t2]"_qs}}},
    };
    for (const auto &[what, isFirstColumnLast, selection, tsv, inserts] : cases) {
        QHeaderView &header = *grid.horizontalHeader();
        header.moveSection(header.visualIndex(0), isFirstColumnLast ? 2 : 0);
        select(grid, selection);
        EXPECT_EQ(copied(grid, Format::Tsv), tsv) << what;
        QString statements;
        for (const auto &[columns, values] : inserts)
            statements += u"INSERT INTO shop.t (%1) VALUES (%2);\n"_qs.arg(columns, values);
        EXPECT_EQ(copied(grid, Format::Insert), statements) << what;
    }
    EXPECT_EQ(copied(grid, Format::Csv), u"name,id\n,1\nt2,\n"_qs);
    EXPECT_EQ(copied(grid, Format::Json), u"[\n  {\"id\": 1},\n  {\"name\": \"t2\"}\n]\n"_qs);
    grid.clearSelection();
    EXPECT_TRUE(copied(grid, Format::Tsv).startsWith(u"t1\tb1\t1\n"));
    EXPECT_EQ(grid.selectedArea().rowCount(), 6) << "nothing selected is all";
}

TEST_F(DXResultGridTest, selectsAndGoesByKeys)
{
    for (int row = 0; row < 50; ++row)
        append({QByteArray::number(row), QByteArray("x"), std::nullopt});
    finish();
    DXResultGrid grid(details);
    grid.setCurrentIndex(grid.model()->index(10, 1));
    const struct
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int row;
        int column;
        int selectedCells;
    } presses[] = {
        {Qt::Key_Home, Qt::NoModifier, 10, 0, 1},
        {Qt::Key_End, Qt::NoModifier, 10, 2, 1},
        {Qt::Key_Home, Qt::ShiftModifier, 10, 0, 3},
        {Qt::Key_Down, Qt::ShiftModifier, 11, 0, 6},
        {Qt::Key_End, Qt::ControlModifier, 49, 2, 1},
        {Qt::Key_Home, Qt::ControlModifier, 0, 0, 1},
        {Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier, 49, 2, 150},
        {Qt::Key_Up, Qt::ControlModifier, 0, 2, 1},
        {Qt::Key_Left, Qt::ControlModifier, 0, 0, 1},
        {Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier, 49, 0, 50},
        {Qt::Key_Right, Qt::ControlModifier, 49, 2, 1},
        {Qt::Key_A, Qt::ControlModifier, 49, 2, 150},
    };
    int number = 0;
    for (const auto &[key, modifiers, row, column, selectedCells] : presses) {
        QTest::keyClick(&grid, key, modifiers);
        const QModelIndex current = grid.currentIndex();
        EXPECT_EQ(QPoint(current.column(), current.row()), QPoint(column, row)) << number;
        EXPECT_EQ(grid.selectedArea().cellCount(), selectedCells) << number;
        ++number;
    }
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
    // Identifiers go on.
    EXPECT_GE(grid.columnWidth(0), grid.fontMetrics().horizontalAdvance(u"123456789"_qs));
    // By a double click on the heading's edge.
    grid.resize(800, 300);
    grid.resizeColumnToContents(1);
    EXPECT_GT(grid.columnWidth(1), fitted);
    EXPECT_LE(grid.columnWidth(1), 800);
    append({QByteArray("1234567890123456789012345678901234567890"), QByteArray("x"), std::nullopt});
    details->addRows();
    const int narrow = grid.columnWidth(0);
    grid.resultModel().update();
    EXPECT_EQ(grid.columnWidth(0), narrow);
}

} // namespace
