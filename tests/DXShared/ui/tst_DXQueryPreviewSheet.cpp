// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXDispatch.h"
#include "query/StaticQueryLoader.h"
#include "support/DXWait.h"
#include "support/FakeDBC.h"
#include "support/PrintQt.h"
#include "ui/DXDangerButton.h"
#include "ui/DXFailureView.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryPreviewSheet.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include <gtest/gtest.h>

namespace
{

/// A connection that no script may be run on.
class NoServer final : public FakeDBC
{
public:
    std::unique_ptr<DXQuerySplitter> createQuerySplitter() const override
    {
        return std::make_unique<DXQuerySplitter>(SQLMetadataTokenizerOptions());
    }
    std::unique_ptr<DabroDatabaseClient> createNewClient() const override
    {
        ADD_FAILURE() << "something was run";
        return {};
    }
};

/// Delivers when the test says so.
class SlowLoader final : public DXQueryLoader
{
public:
    SlowLoader() = default;
    void beginLoadingQuery(const DabroDBC &) override { }
    using DXQueryLoader::deliver;
};

class DXQueryPreviewSheetTest : public testing::Test
{
protected:
    DXQueryPreviewSheetTest()
    {
        window.show();
        preview.setTitle(u"Do you really want to drop the table '<b>orders</b>'?"_qs);
        preview.setAcceptButtonTitle(u"Drop"_qs);
    }
    void show(const std::shared_ptr<DXQueryLoader> &loader)
    {
        preview.setQueryLoader(loader);
        preview.beginSheetForWindow(&window, [this](int result) { results += result; });
        sheet = window.findChild<DXQueryPreviewSheet *>();
        ASSERT_TRUE(sheet);
    }
    void showScript(const QString &script)
    {
        show(std::make_shared<StaticQueryLoader>(script));
        ASSERT_TRUE(DXWait::until([&] { return shownScript() == script; }));
    }
    // What was handed to the main thread until now has been done then.
    static void passEvents()
    {
        bool isDone = false;
        DXDispatch::main([&isDone] { isDone = true; });
        EXPECT_TRUE(DXWait::until([&isDone] { return isDone; }));
    }
    QString shownScript() const { return sheet->findChild<DXSQLEditor *>()->text(); }
    bool canAccept() const { return sheet->findChild<DXDangerButton *>()->isEnabled(); }
    bool showsText(const QString &text) const
    {
        for (const QLabel *label : sheet->findChildren<QLabel *>()) {
            if (label->isVisible() && label->text() == text)
                return label->textFormat() == Qt::PlainText;
        }
        return false;
    }

    QWidget window;
    DXQueryPreviewViewController preview{std::make_shared<NoServer>()};
    QPointer<DXQueryPreviewSheet> sheet;
    QList<int> results;
};

TEST_F(DXQueryPreviewSheetTest, offersOnlyStatementsToRun)
{
    for (const auto &[script, isOffered] : std::initializer_list<std::pair<const char *, bool>>{
             {"DROP TABLE orders", true},
             {"/* a */ DROP TABLE orders;", true},
             {"/*\r\n* Error loading table definition.\r\n* no route to host\r\n*/", false},
             {"-- ; DROP TABLE orders", false},
             {"/* /* */ ; DROP TABLE orders */ ;;", false},
             {"  ;\n", false},
         }) {
        showScript(QString::fromUtf8(script));
        EXPECT_EQ(canAccept(), isOffered) << script;
        EXPECT_EQ(sheet->findChild<DXFailureView *>()->isVisible(), !isOffered) << script;
        sheet->reject();
        EXPECT_TRUE(DXWait::until([&] { return sheet.isNull(); }));
    }
}

TEST_F(DXQueryPreviewSheetTest, cancelsByReturnAndEscape)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        showScript(u"DROP TABLE orders"_qs);
        EXPECT_TRUE(showsText(u"Do you really want to drop the table '<b>orders</b>'?"_qs));
        for (QPushButton *button : sheet->findChildren<QPushButton *>())
            EXPECT_FALSE(button->autoDefault());
        // Even on the button that drops.
        sheet->findChild<DXDangerButton *>()->setFocus();
        QTest::keyClick(sheet->focusWidget(), key);
        EXPECT_TRUE(DXWait::until([&] { return sheet.isNull(); }));
    }
    EXPECT_EQ(results, (QList<int>{0, 0}));
}

TEST_F(DXQueryPreviewSheetTest, saysThatItLoadsWhenThatTakesTime)
{
    const auto loader = std::make_shared<SlowLoader>();
    show(loader);
    EXPECT_FALSE(showsText(u"Loading the statements…"_qs));
    EXPECT_FALSE(canAccept());
    EXPECT_TRUE(DXWait::until([&] { return showsText(u"Loading the statements…"_qs); }));
    loader->deliver(u"DROP TABLE orders"_qs);
    EXPECT_TRUE(DXWait::until([&] { return canAccept(); }));
    EXPECT_EQ(shownScript(), u"DROP TABLE orders"_qs);
    loader->deliver(u"DROP TABLE people"_qs);
    passEvents();
    EXPECT_EQ(shownScript(), u"DROP TABLE orders"_qs);

    sheet->reject();
    EXPECT_TRUE(DXWait::until([&] { return sheet.isNull(); }));
    loader->deliver(u"DROP TABLE orders"_qs);
    show(loader);
    delete sheet;
    loader->deliver(u"DROP TABLE orders"_qs);
    passEvents();
    EXPECT_EQ(results, QList<int>{0});
}

} // namespace
