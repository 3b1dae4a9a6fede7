// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"

#include "desktop/MainWindow.h"
#include "desktop/documents/Documents.h"
#include "support/DXWait.h"
#include "ui/DXFailureList.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXMessageView.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/results/DXResultPage.h"
#include "ui/results/DXResultText.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QApplication>
#include <QLabel>
#include <QStatusBar>
#include <QTreeView>

#include <algorithm>

DesktopTest::DesktopTest()
{
    QApplication::setApplicationName(QStringLiteral("dabro-test"));
    for (const char *const variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, m_home.path().toUtf8());
    // A desktop's secret service knows nothing of tests.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
}

DesktopTest::~DesktopTest()
{
    closeWindow();
}

QString DesktopTest::uri(const PostgresCluster &cluster, const QString &database)
{
    return QStringLiteral("host=%1 port=%2 user=%3 dbname=%4")
        .arg(cluster.socketFolder(), QString::number(cluster.port()), PostgresCluster::superuser(),
             database);
}

MainWindow &DesktopTest::open()
{
    closeWindow();
    m_window = std::make_unique<MainWindow>();
    m_window->resize(1280, 800);
    m_window->show();
    return *m_window;
}

void DesktopTest::closeWindow()
{
    if (m_window)
        m_window->close();
    m_window.reset();
}

DXQueryTab &DesktopTest::tab() const
{
    return *m_window->documents().current();
}

QTreeView &DesktopTest::tree() const
{
    const auto trees = m_window->tree().findChildren<QTreeView *>();
    return **std::ranges::find_if(trees, &QTreeView::isVisible);
}

QModelIndex DesktopTest::find(const QStringList &names) const
{
    QModelIndex index;
    for (const QString &name : names) {
        const QAbstractItemModel &model = *tree().model();
        int row = 0;
        while (row < model.rowCount(index)
               && !model.index(row, 0, index).data().toString().contains(name))
            ++row;
        if (row == model.rowCount(index))
            return {};
        index = model.index(row, 0, index);
        tree().expand(index);
    }
    return index;
}

bool DesktopTest::run(const QString &text) const
{
    tab().editor().setText(text);
    tab().runAll();
    return becomesIdle();
}

bool DesktopTest::start(const PostgresCluster &cluster, const QString &text) const
{
    tab().editor().setText(text);
    tab().runAll();
    return DXWait::until([&] {
        return cluster.psql(QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE "
                                           "state = 'active' AND wait_event = 'PgSleep' AND "
                                           "query = '%1'")
                                .arg(text))
               == u"1";
    });
}

bool DesktopTest::becomesIdle() const
{
    return DXWait::until([this] { return !tab().session().isBusy(); });
}

QString DesktopTest::messages() const
{
    return tab().messages().toPlainText();
}

QStringList DesktopTest::failures() const
{
    const DXQueryTab *const current = m_window->documents().current();
    return m_window->failures().headlines()
           + (current ? current->failures().headlines() : QStringList());
}

QString DesktopTest::statusMessage() const
{
    return m_window->statusBar()->currentMessage();
}

QString DesktopTest::statusText() const
{
    QStringList texts;
    for (const QLabel *const label : m_window->statusBar()->findChildren<QLabel *>())
        texts.append(label->text());
    return texts.join(u'|');
}

QString DesktopTest::cells(int result) const
{
    const DXQueryResultDetails &details = tab().resultPages().at(result)->details();
    QStringList rows;
    for (qsizetype row = 0; row < details.rows()->rowCount(); ++row) {
        QStringList fields;
        for (qsizetype column = 0; column < details.columnNames().size(); ++column)
            fields.append(DXResultText::textOf(details.value(row, static_cast<quint32>(column))));
        rows.append(fields.join(u'|'));
    }
    return rows.join(u'\n');
}

void DesktopTest::press(int key, Qt::KeyboardModifiers modifiers) const
{
    // A question that was just answered leaves no window active, and keys without effect.
    m_window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keyClick(m_window.get(), static_cast<Qt::Key>(key), modifiers);
}
