// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DatabaseResultSet.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace
{

// One row of the given cells, under the names "a", "b", …
class OneRow final : public DatabaseResultSet
{
public:
    explicit OneRow(const QList<DXValue> &cells)
        : m_cells(cells)
    {
        QStringList names;
        for (qsizetype i = 0; i < cells.size(); ++i)
            names += QString(QChar(u'a' + static_cast<char16_t>(i)));
        setColumnNames(names);
    }

    bool next(DXError *) override { return false; }
    bool nextResultSet(DXError *) override { return false; }
    quint32 columnCount() const override { return static_cast<quint32>(m_cells.size()); }
    DXValue objectForColumnIndex(quint32 index) const override { return m_cells.value(index); }
    qint64 numberOfAffectedRows() const override { return -1; }

private:
    QList<DXValue> m_cells;
};

class LocaleGuard final
{
public:
    explicit LocaleGuard(const char *name) { QLocale::setDefault(QLocale(QLatin1String(name))); }
    ~LocaleGuard() { QLocale::setDefault(m_before); }

private:
    Q_DISABLE_COPY_MOVE(LocaleGuard)
    QLocale m_before;
};

DXValue decimal(const char *text)
{
    return *DXDecimal::fromString(text);
}

TEST(DatabaseResultSet, tellsTruth)
{
    struct Case
    {
        DXValue cell;
        std::optional<bool> expected;
    };
    for (const auto &[cell, expected] : std::initializer_list<Case>{
             {DXValue(), std::nullopt},
             {DXValue(0), false},
             {DXValue(-1), true},
             {decimal("0.00"), false},
             {decimal("0.001"), true},
             {QStringLiteral("True"), true},
             {QStringLiteral("False"), false},
             {QStringLiteral(" \tyes"), true},
             {QStringLiteral("T"), true},
             {QStringLiteral("9"), true},
             {QStringLiteral("0"), false},
             {QStringLiteral("01"), false},
             {QStringLiteral("on"), false},
             {QStringLiteral(" "), false},
             {QStringLiteral(""), false},
         }) {
        EXPECT_EQ(OneRow({cell}).boolForColumnIndex(0), expected) << qPrintable(cell.toText());
        EXPECT_EQ(OneRow({cell}).boolForColumn(QStringLiteral("a")), expected);
    }
}

TEST(DatabaseResultSet, readsNumbersAsTheLocaleWritesThem)
{
    struct Case
    {
        const char *locale;
        QString text;
        std::optional<DXValue> expected;
    };
    const auto nothing = std::nullopt;
    for (const auto &[locale, text, expected] : std::initializer_list<Case>{
             {"en_US", QStringLiteral("42"), DXValue(42)},
             {"en_US", QStringLiteral(" -1,234,567 "), DXValue(-1234567)},
             {"en_US", QStringLiteral("+7"), DXValue(7)},
             {"en_US", QStringLiteral("1.50"), decimal("1.50")},
             {"en_US", QStringLiteral(".5"), decimal("0.5")},
             {"en_US", QStringLiteral("-5."), decimal("-5")},
             {"en_US", QStringLiteral("1e3"), decimal("1000")},
             {"en_US", QStringLiteral("1.5E-02"), decimal("0.015")},
             {"en_US", QStringLiteral("9223372036854775807"), DXValue(9223372036854775807)},
             {"en_US", QStringLiteral("9,223,372,036,854,775,808"), decimal("9223372036854775808")},
             {"en_US", QStringLiteral("12345678901234567890.123456789"),
              decimal("12345678901234567890.123456789")},
             {"en_US", QStringLiteral("1,23"), nothing},
             {"en_US", QStringLiteral("1234,567"), nothing},
             {"en_US", QStringLiteral("1,,234"), nothing},
             {"en_US", QStringLiteral(",123"), nothing},
             {"en_US", QStringLiteral("1.000,5"), nothing},
             {"en_US", QStringLiteral("1,234,"), nothing},
             {"en_US", QStringLiteral("1.2.3"), nothing},
             {"en_US", QStringLiteral("1 000"), nothing},
             {"en_US", QStringLiteral("--1"), nothing},
             {"en_US", QStringLiteral("1e"), nothing},
             {"en_US", QStringLiteral("."), nothing},
             {"en_US", QStringLiteral("-."), nothing},
             {"en_US", QStringLiteral("-"), nothing},
             {"en_US", QStringLiteral(""), nothing},
             {"en_US", QStringLiteral("NaN"), nothing},
             {"en_US", QStringLiteral("7 rows"), nothing},
             {"en_IN", QStringLiteral("12,34,567"), DXValue(1234567)},
             {"de_DE", QStringLiteral("1.234.567,50"), decimal("1234567.50")},
             {"de_DE", QStringLiteral("1.234"), DXValue(1234)},
             {"de_DE", QStringLiteral("1.5"), nothing},
             {"de_DE", QStringLiteral("-0,1"), decimal("-0.1")},
             {"fr_FR", QStringLiteral("1 234\u202f567,5"), decimal("1234567.5")},
             {"de_CH", QStringLiteral("1'234.5"), decimal("1234.5")},
             {"sv_SE", QStringLiteral("\u22125"), DXValue(-5)},
             {"ar_EG", QStringLiteral("\u0661\u0662"), DXValue(12)},
         }) {
        const LocaleGuard guard(locale);
        EXPECT_EQ(OneRow({text}).numberForColumnIndex(0), expected)
            << locale << ": " << qPrintable(text);
    }
}

TEST(DatabaseResultSet, leavesOtherKindsThanTextAlone)
{
    const LocaleGuard guard("de_DE");
    for (const DXValue &cell :
         {DXValue(), DXValue(42), decimal("1.50"), DXValue(QByteArrayLiteral("12"))}) {
        EXPECT_EQ(OneRow({cell}).numberForColumn(QStringLiteral("a")), cell);
        EXPECT_EQ(OneRow({cell}).stringForColumn(QStringLiteral("a")), cell);
    }
}

TEST(DatabaseResultSet, findsColumnsByTheirExactNameOnly)
{
    OneRow row({DXValue(1), DXValue(2), DXValue(3)});
    row.setColumnNames({QStringLiteral("id"), QStringLiteral("Name"), QStringLiteral("id")});
    EXPECT_EQ(row.stringForColumn(QStringLiteral("id")), DXValue(1));
    EXPECT_EQ(row.numberForColumn(QStringLiteral("Name")), DXValue(2));
    EXPECT_EQ(row.indexOfColumn(QStringLiteral("name")), -1);
    EXPECT_TRUE(row.stringForColumn(QStringLiteral("name")).isNull());
    EXPECT_EQ(row.numberForColumn(QStringLiteral("name")), DXValue());
    EXPECT_EQ(row.boolForColumn(QStringLiteral("ID")), std::nullopt);
    EXPECT_EQ(row.columnNameForIndex(1), QStringLiteral("Name"));
    EXPECT_TRUE(row.columnNameForIndex(3).isNull());
}

} // namespace
