// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/PostgresCluster.h"

#include <QModelIndex>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>

class DXQueryTab;
class MainWindow;
class QTreeView;

/// A window as a user opens it, with settings, journal and secrets of its own, and a server to talk
/// to.
class DesktopTest : public testing::Test
{
public:
    ~DesktopTest() override;

protected:
    DesktopTest();

    /// The text that connects to the server, as on the command line.
    static QString uri(const PostgresCluster &cluster,
                       const QString &database = QStringLiteral("postgres"));
    /// Opens a window, in place of the one before.
    MainWindow &open();
    void closeWindow();
    MainWindow &window() const { return *m_window; }
    DXQueryTab &tab() const;
    QTreeView &tree() const;
    /// The row of the tree that names lead to from the top, unfolding each; invalid while there is
    /// none.
    QModelIndex find(const QStringList &names) const;

    /// Puts text into the tab's editor and runs all of it; false when that does not end.
    bool run(const QString &text) const;
    /// Starts text, a statement that sleeps, and waits until the cluster computes it.
    bool start(const PostgresCluster &cluster, const QString &text) const;
    bool becomesIdle() const;
    QString messages() const;
    /// What the window says to have failed, outside of tabs and in the one that is shown.
    QStringList failures() const;
    /// What the status line announces.
    QString statusMessage() const;
    /// What the status line says all the time, its parts apart by "|".
    QString statusText() const;
    /// The cells of a result, fields apart by "|" and rows by line breaks.
    QString cells(int result) const;
    /// Presses a key of the window.
    void press(int key, Qt::KeyboardModifiers modifiers) const;
    /// Where the program keeps what it writes.
    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
    std::unique_ptr<MainWindow> m_window;
};
