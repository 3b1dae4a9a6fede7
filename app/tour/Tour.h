// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

class DXDatabaseTreeModel;
class DXQueryTab;
class MainWindow;
class QAbstractItemModel;
class QModelIndex;
class QTreeView;

/// Drives a window as a user would, by keys and clicks, and takes pictures of it. [main]
class Tour final
{
public:
    struct Init
    {
        /// Where the pictures go.
        QString folder;
        /// The beginning of the pictures' names; "dark…" shows the dark appearance.
        QString name;
        /// The demo database.
        QString uri;
    };
    Tour(MainWindow &window, const Init &init);

    /// Goes to every station; false when one was not as it should be.
    bool run();

private:
    using Condition = std::function<bool()>;

    void welcome();
    void browse();
    void query();
    void failure();
    void palette();
    void completion();
    void preview();
    void connection();

    /// Waits for condition and takes a picture then.
    void show(const QString &name, const QString &title, const Condition &condition);
    void type(const QString &text);
    void press(int key, Qt::KeyboardModifiers modifiers = {});
    DXQueryTab &tab() const;
    QTreeView &tree() const;
    bool expand(const QStringList &names) const;

    MainWindow &m_window;
    const Init m_init;
    int m_station = 0;
    bool m_isWell = true;
};
