// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXCollation.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace
{

class DefaultLocale final
{
public:
    explicit DefaultLocale(const QLocale &locale) { QLocale::setDefault(locale); }
    ~DefaultLocale() { QLocale::setDefault(QLocale::system()); }

private:
    Q_DISABLE_COPY_MOVE(DefaultLocale)
};

// Equal names differ in case only here, so their order shows that it was kept.
TEST(DXCollation, ordersNamesAsPeopleReadThem)
{
    const QStringList names{
        QStringLiteral("zebra"), QStringLiteral("b"),    QStringLiteral("A"),
        QStringLiteral("B"),     QStringLiteral(""),     QStringLiteral("a"),
        QStringLiteral("Öl"),    QStringLiteral("Ofen"), QStringLiteral("_x"),
    };
    struct Case
    {
        QLocale locale;
        QString expected;
    };
    for (const auto &[locale, expected] : {
             Case{QLocale::c(), QStringLiteral(" _x A a b B Ofen Öl zebra")},
             Case{QLocale(QLocale::German), QStringLiteral(" _x A a b B Ofen Öl zebra")},
             Case{QLocale(QLocale::Swedish), QStringLiteral(" _x A a b B Ofen zebra Öl")},
         }) {
        const DefaultLocale scope(locale);
        EXPECT_EQ(DXCollation::sorted(names).join(u' '), expected) << qPrintable(locale.name());
    }
    EXPECT_EQ(
        DXCollation::sortedIndexes({QStringLiteral("c"), QStringLiteral("A"), QStringLiteral("a")}),
        (QList<qsizetype>{1, 2, 0}));
    EXPECT_EQ(DXCollation::ranks({QStringLiteral("c"), QStringLiteral("A"), QStringLiteral("a")}),
              (QList<qsizetype>{1, 0, 0}));
}

} // namespace
