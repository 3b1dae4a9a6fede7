// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// One start of the window for bench_start, which measures from before this process was made.
//     bench_start_window dabro|bare NANOSECONDS [CONNECTION]
// prints a line "painted SECONDS MEGABYTES" and, for a connection, "tree SECONDS MEGABYTES", the
// peak of memory so far, and ends.

#include "PaintedApplication.h"
#include "desktop/MainWindow.h"
#include "ui/editor/DXScintilla.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QFile>
#include <QHeaderView>
#include <QLoggingCategory>
#include <QMainWindow>
#include <QMenuBar>
#include <QSplitter>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>
#include <QTreeView>

#include <cstdio>
#include <unistd.h>

namespace
{

double peakMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').at(1).toDouble() / 1024;
    }
    return 0;
}

void tell(const char *what, PaintedApplication::Clock::time_point start)
{
    const std::chrono::duration<double> taken = PaintedApplication::Clock::now() - start;
    std::printf("%s %.4f %.1f\n", what, taken.count(), peakMegabytes());
    std::fflush(stdout);
}

// What a window of these kinds of widgets costs when it does nothing.
void fillBare(QMainWindow &window)
{
    auto *const bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (int at = 1; at <= 6; ++at) {
        QAction *const action = bar->addAction(QStringLiteral("Action %1").arg(at));
        window.menuBar()->addMenu(QStringLiteral("Menu %1").arg(at))->addAction(action);
    }
    window.addToolBar(bar);
    window.statusBar()->showMessage(QStringLiteral("Ready"));
    auto *const model = new QStandardItemModel(20, 5, &window);
    for (int cell = 0; cell < 100; ++cell)
        model->setItem(cell / 5, cell % 5, new QStandardItem(QStringLiteral("Cell %1").arg(cell)));
    auto *const tree = new QTreeView;
    tree->setModel(model);
    auto *const table = new QTableView;
    table->setModel(model);
    auto *const editor = new QsciScintilla;
    editor->setText(QStringLiteral("SELECT 1;\n"));
    auto *const work = new QSplitter(Qt::Vertical);
    work->addWidget(editor);
    work->addWidget(table);
    auto *const splitter = new QSplitter;
    splitter->addWidget(tree);
    splitter->addWidget(work);
    window.setCentralWidget(splitter);
    window.resize(1280, 800);
}

bool hasTree(const MainWindow &window)
{
    const auto trees = window.tree().findChildren<QTreeView *>();
    for (const QTreeView *const tree : trees) {
        if (tree->isVisible() && tree->model()->rowCount(tree->model()->index(0, 0)) > 0)
            return true;
    }
    return false;
}

// Ends the process as soon as there is nothing more to tell.
void watch(PaintedApplication &application, PaintedApplication::Clock::time_point start,
           const std::function<bool()> &hasTree)
{
    application.watch([](QObject &) { return true; },
                      [start, hasTree, isPainted = false]() mutable {
                          if (!std::exchange(isPainted, true))
                              tell("painted", start);
                          if (hasTree && !hasTree())
                              return;
                          if (hasTree)
                              tell("tree", start);
                          ::_exit(0);
                      });
}

} // namespace

int main(int argc, char **argv)
{
    PaintedApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("bench_start_window dabro|bare NANOSECONDS [CONNECTION]\n", stderr);
        return 2;
    }
    const PaintedApplication::Clock::time_point start(
        std::chrono::nanoseconds(arguments[2].toLongLong()));
    if (arguments[1] == u"bare") {
        QMainWindow window;
        fillBare(window);
        watch(application, start, {});
        window.show();
        return QApplication::exec();
    }
    // As the program's own main() does.
    QApplication::setOrganizationName(QStringLiteral("dabro"));
    QApplication::setApplicationName(QStringLiteral("dabro"));
    QApplication::setApplicationDisplayName(QStringLiteral("Dabro"));
    QLoggingCategory::setFilterRules(QStringLiteral("org.dabro=false"));
    MainWindow window;
    const bool connects = arguments.size() > 3;
    watch(application, start,
          connects ? std::function<bool()>([&window] { return hasTree(window); }) : nullptr);
    window.show();
    window.openArguments(arguments.mid(3));
    return QApplication::exec();
}
