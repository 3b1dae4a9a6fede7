// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnectionList.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QList>
#include <QWidget>

class DXSavedConnectionsModel;
class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QStackedWidget;
class QToolButton;
class QTreeView;

/// The saved connections of one or several drivers, to search, connect, edit, duplicate and delete,
/// with the mouse or the keys. It reads the lists in the background, and when the secret store does
/// not hand them out it says so and offers to try again. It opens nothing itself: whoever shows it
/// does what its signals ask for. [main]
class DXSHARED_EXPORT DXSavedConnectionsView final : public QWidget
{
    Q_OBJECT

public:
    using Record = SQLRecentConnectionList::Record;

    explicit DXSavedConnectionsView(QWidget *parent = nullptr);
    ~DXSavedConnectionsView() override;

    /// Whether it offers to make a new connection, which it does at first; for windows that do so
    /// themselves.
    void setOffersNew(bool yes);
    /// Shows lists, which outlive the view, and reads those that were not read yet.
    void setLists(const QList<SQLRecentConnectionList *> &lists);
    /// Null for none.
    Record currentRecord() const;
    /// Makes the connection with this id the current one, if it is shown; else none.
    void setCurrentId(const QString &connectionId);
    /// The menu of the current connection; the caller owns it.
    std::unique_ptr<QMenu> createMenu();

Q_SIGNALS:
    void connectRequested(const std::shared_ptr<SQLRecentConnection> &record);
    void editRequested(const std::shared_ptr<SQLRecentConnection> &record);
    void newRequested();
    /// By the user; null for none.
    void currentChanged(const std::shared_ptr<SQLRecentConnection> &record);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *createEmptyPage();
    QWidget *createNotice();
    void createActions();
    QAction *addKey(const QString &text, const QKeySequence &key,
                    void (DXSavedConnectionsView::*act)());
    bool searchKeyPressed(int key);
    void load();
    void loaded(const DXError &error);
    void rebuild();
    void updateActions();
    void showPage();
    void connectCurrent();
    void editCurrent();
    void duplicateCurrent();
    void deleteCurrent();
    void remove(const Record &record);
    /// Shows above the list why something was not saved.
    SQLRecentConnectionList::Done failureHandler();
    SQLRecentConnectionList *listOf(const Record &record) const;

    QList<SQLRecentConnectionList *> m_lists;
    DXSavedConnectionsModel *const m_model;
    QLineEdit *const m_search;
    QTreeView *const m_tree;
    QStackedWidget *const m_stack;
    QLabel *m_emptyText = nullptr;
    QPushButton *m_emptyButton = nullptr;
    QToolButton *m_newButton = nullptr;
    bool m_offersNew = true;
    QWidget *m_notice = nullptr;
    QLabel *m_noticeText = nullptr;
    QAction *m_connect = nullptr;
    QAction *m_edit = nullptr;
    QAction *m_duplicate = nullptr;
    QAction *m_delete = nullptr;
    std::shared_ptr<void> m_observer;
    QString m_currentId;
    QStringList m_collapsed;
    DXError m_error;
    int m_loading = 0;
    bool m_isRebuilding = false;
};
