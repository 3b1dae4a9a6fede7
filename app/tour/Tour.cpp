// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tour/Tour.h"

#include "desktop/Chooser.h"
#include "desktop/MainWindow.h"
#include "desktop/documents/Documents.h"
#include "ui/connection/DXConnectionDialog.h"
#include "ui/editor/DXCompletionPopup.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXMessageView.h"
#include "ui/query/DXQueryPreviewSheet.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultModel.h"
#include "ui/results/DXResultPage.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <cstdio>

namespace
{

using Id = ActionSet::Id;

constexpr int patienceMilliseconds = 20000;

} // namespace

Tour::Tour(MainWindow &window, const Init &init)
    : m_window(window)
    , m_init(init)
{
    QDir().mkpath(init.folder);
    window.actions()[init.name.startsWith(u"dark") ? Id::AppearanceDark : Id::AppearanceLight]
        ->trigger();
    window.showFullScreen();
}

bool Tour::run()
{
    const std::function<void()> stations[] = {
        [this] { welcome(); }, [this] { browse(); },     [this] { query(); },
        [this] { failure(); }, [this] { palette(); },    [this] { completion(); },
        [this] { preview(); }, [this] { connection(); },
    };
    for (const auto &station : stations) {
        if (m_isWell)
            station();
    }
    return m_isWell;
}

void Tour::show(const QString &name, const QString &title, const Condition &condition)
{
    const bool isThere = QTest::qWaitFor(condition, patienceMilliseconds);
    // The last changes reach the screen with the next turns of the event loop.
    QTest::qWait(100);
    const QString file =
        QStringLiteral("%1-%2-%3.png").arg(m_init.name, QString::number(++m_station), name);
    m_isWell = QApplication::primaryScreen()->grabWindow(0).save(QDir(m_init.folder).filePath(file))
               && isThere && m_isWell;
    std::printf("%s %s: %s\n", isThere ? "     " : "  not", qPrintable(file), qPrintable(title));
}

void Tour::type(const QString &text)
{
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(),
                            character == u'\n' ? Qt::Key_Return : Qt::Key_unknown,
                            character == u'\n' ? QStringLiteral("\r") : QString(character),
                            Qt::NoModifier);
}

void Tour::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
}

DXQueryTab &Tour::tab() const
{
    return *m_window.documents().current();
}

QTreeView &Tour::tree() const
{
    const auto trees = m_window.tree().findChildren<QTreeView *>();
    return **std::ranges::find_if(trees, &QTreeView::isVisible);
}

// True when the entries are there and unfolded; entries that have yet to be loaded come later.
bool Tour::expand(const QStringList &names) const
{
    QModelIndex index;
    for (const QString &name : names) {
        const QAbstractItemModel &model = *tree().model();
        int row = 0;
        while (row < model.rowCount(index)
               && !model.index(row, 0, index).data().toString().startsWith(name))
            ++row;
        if (row == model.rowCount(index))
            return false;
        index = model.index(row, 0, index);
        tree().expand(index);
        tree().setCurrentIndex(index);
    }
    return tree().model()->rowCount(index) > 0;
}

void Tour::welcome()
{
    show(QStringLiteral("welcome"), QStringLiteral("The window on an empty desk"),
         [this] { return m_window.isVisible(); });
}

void Tour::completion()
{
    tab().editor().setText(QStringLiteral("SELECT o.\nFROM orders AS o\nWHERE o.status = 'paid'"));
    tab().editor().setFocus();
    // The names are asked for once a tab has its connection, and come when they come.
    show(QStringLiteral("completion"), QStringLiteral("The columns behind an alias"), [this] {
        auto &popup = *tab().findChild<DXCompletionPopup *>();
        tab().editor().setCaretPosition(9);
        popup.open();
        return popup.isVisible();
    });
    press(Qt::Key_Escape);
}

void Tour::preview()
{
    tree().setFocus();
    QTest::keyClick(&tree(), Qt::Key_Delete);
    show(QStringLiteral("preview"), QStringLiteral("What would be run, before it is"), [] {
        const auto *const sheet =
            qobject_cast<DXQueryPreviewSheet *>(QApplication::activeModalWidget());
        return sheet && sheet->findChild<DXSQLEditor *>()->text().contains(QStringLiteral("DROP"));
    });
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
}

void Tour::connection()
{
    m_window.actions()[Id::NewConnection]->trigger();
    show(QStringLiteral("connection"), QStringLiteral("The form of a connection"), [] {
        return qobject_cast<DXConnectionDialog *>(QApplication::activeModalWidget()) != nullptr;
    });
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
}

void Tour::browse()
{
    m_window.openArguments({m_init.uri});
    show(QStringLiteral("tree"), QStringLiteral("The catalogue, as far as one table's columns"),
         [this] {
             const QModelIndex root = tree().model()->index(0, 0);
             return tree().model()->rowCount(root) > 0
                    && expand({root.data().toString(), QStringLiteral("shop"),
                               QStringLiteral("Tables"), QStringLiteral("orders")});
         });
}

void Tour::query()
{
    tab().editor().setFocus();
    tab().editor().setText(
        QStringLiteral("-- What sells best, and who buys it\n"
                       "SELECT * FROM best_sellers(20);\n\n"
                       "SELECT c.number, c.last_name, count(*) AS orders, sum(t.total) AS spent\n"
                       "FROM order_totals AS t\n"
                       "JOIN crm.customers AS c ON c.id = t.customer_id\n"
                       "WHERE t.status <> 'cancelled'\n"
                       "GROUP BY c.number, c.last_name\n"
                       "ORDER BY spent DESC\n"
                       "LIMIT 100;\n"));
    m_window.actions()[Id::RunAll]->trigger();
    show(QStringLiteral("grids"), QStringLiteral("Two statements, each with its grid"), [this] {
        const auto pages = tab().resultPages();
        return !tab().session().isBusy() && pages.size() == 2 && pages[0]->rowCount() == 20;
    });
}

void Tour::failure()
{
    tab().editor().setText(
        QStringLiteral("SELECT name, prize\nFROM products\nWHERE price > 100;\n"));
    m_window.actions()[Id::RunAll]->trigger();
    show(QStringLiteral("error"), QStringLiteral("An error, marked where it is"), [this] {
        return !tab().session().isBusy()
               && tab().messages().toPlainText().contains(QStringLiteral("prize"));
    });
}

void Tour::palette()
{
    m_window.actions()[Id::CommandPalette]->trigger();
    type(QStringLiteral("run"));
    show(QStringLiteral("commands"), QStringLiteral("Every command by its name"),
         [this] { return m_window.findChild<Chooser *>() != nullptr; });
    press(Qt::Key_Escape);
}
