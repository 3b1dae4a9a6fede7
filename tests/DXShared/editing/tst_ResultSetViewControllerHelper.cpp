// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/ResultSetViewControllerHelper.h"

#include "query/DXQueryLoader.h"

#include <gtest/gtest.h>

namespace
{

// A helper that knows nothing of its server, to show what every driver's inherits.
class PlainHelper final : public ResultSetViewControllerHelper
{
public:
    PlainHelper()
        : ResultSetViewControllerHelper(nullptr)
    { }
    void beginLoadingPrimaryKeys() override { }
    std::optional<QStringList> primaryKeyColumnNames() const override { return {}; }
    CellKind dataTypeForTableColumn(int, const DXValue &) const override { return {}; }
    std::optional<QStringList> popupTitlesAtIndex(int) const override { return {}; }
    std::optional<DXEnumHelper> enumDetailsForColumn(int) const override { return {}; }
    DXValue processSetObject(const DXValue &object, int) const override { return object; }
    QString updateQueryForTable(const UpdateParts &) const override { return {}; }
    std::shared_ptr<DXQueryLoader>
    createQueryLoaderForDeleteFromTablePath(const QStringList &, const QStringList &,
                                            const QList<QList<DXValue>> &) const override
    {
        return {};
    }
};

TEST(ResultSetViewControllerHelper, tellsCellsAsTextAndCutsLongOnesWhereAllowed)
{
    using Helper = ResultSetViewControllerHelper;
    constexpr qsizetype limit = Helper::TruncatedLength;
    const QString full(limit, u'a');
    const QString torn = QString(limit - 1, u'a') + QStringLiteral("😀");
    const struct
    {
        DXValue value;
        QString whole;
        QString shown;
    } cases[] = {
        {DXValue(), QString(), QString()},
        {DXValue(QStringLiteral("")), QStringLiteral(""), QStringLiteral("")},
        {DXValue(qint64(-42)), QStringLiteral("-42"), QStringLiteral("-42")},
        {DXValue(full), full, full},
        {DXValue(full + u'b'), full + u'b', full + u'…'},
        {DXValue(torn), torn, QString(limit - 1, u'a') + u'…'},
        {DXValue(QByteArray("\x00\xff", 2)), QStringLiteral("\\x00ff"), QStringLiteral("\\x00ff")},
        {DXValue(QByteArray(limit, '\x01')),
         QStringLiteral("\\x") + QStringLiteral("01").repeated(limit),
         QStringLiteral("\\x") + QStringLiteral("01").repeated(limit / 2) + u'…'},
    };
    const PlainHelper helper;
    for (const auto &expected : cases) {
        const QList<DXValue> row{expected.value};
        const QString whole = helper.stringValueForRowArray(row, 0, Helper::AllowTruncate::No);
        EXPECT_EQ(whole, expected.whole);
        EXPECT_EQ(whole.isNull(), expected.value.isNull());
        EXPECT_EQ(helper.stringValueForRowArray(row, 0, Helper::AllowTruncate::Yes),
                  expected.shown);
    }
    EXPECT_TRUE(helper.stringValueForRowArray({}, 0, Helper::AllowTruncate::No).isNull());
}

} // namespace
