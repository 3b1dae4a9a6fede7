// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnectionList.h"
#include "core/DXGlobal.h"
#include "ui/connection/DXConnectionAttempt.h"

#include <QDialog>
#include <QHash>
#include <QTimer>

#include <functional>
#include <memory>

class DXConnectionForm;
class DXMessageArea;
class DXSavedConnectionsView;
class DabroDBC;
class QProgressBar;
class QPushButton;

/// The window around a driver's connection form: the saved connections at its left, and below the
/// buttons that test, save and connect, with what became of it. Connecting runs in the background
/// and can be stopped; whatever fails, what the user typed stays. [main]
class DXSHARED_EXPORT DXConnectionDialog final : public QDialog
{
    Q_OBJECT

public:
    using Record = SQLRecentConnectionList::Record;
    struct Init
    {
        /// Outlives the dialog.
        SQLRecentConnectionList &list;
        /// The dialog takes it.
        DXConnectionForm *form;
        QString title;
        /// What is shown first.
        Record record;
        /// Told when the saved connections do not take what was connected, which may be after the
        /// dialog has closed.
        std::function<void(const DXError &error)> notSaved;
        /// Makes what "New connection" shows, with an id.
        std::function<Record()> newRecord;
        QWidget *parent = nullptr;
    };
    explicit DXConnectionDialog(const Init &init);
    ~DXConnectionDialog() override;

    /// Shows record in the form; what was typed for the one shown before is kept until the dialog
    /// closes, and connecting with it is given up.
    void setRecord(const Record &record);
    QString shownId() const;
    /// Shows why connecting failed, and where.
    void showFailure(const DXConnectionAttempt::Result &result);
    /// As a click on "Connect".
    void connectNow();

    /// Stops connecting, or else closes the dialog.
    void reject() override;

Q_SIGNALS:
    /// After a successful connect, when the connection is saved and the dialog closes.
    void connected(const std::shared_ptr<DabroDBC> &details);

private:
    enum class Purpose { Test, Connect };

    QWidget *createSidebar();
    QWidget *createMain();
    QWidget *createButtons();
    void connectSidebar();
    void start(Purpose purpose);
    void finished(Purpose purpose, const DXConnectionAttempt::Result &result);
    void showTest(const DXConnectionAttempt::Result &result);
    void setRunning(bool isRunning);
    void stop();
    void save();
    void saved(const QString &name, const DXError &error);

    SQLRecentConnectionList &m_list;
    DXConnectionForm *const m_form;
    const std::function<void(const DXError &)> m_notSaved;
    const std::function<Record()> m_newRecord;
    DXSavedConnectionsView *m_saved = nullptr;
    DXMessageArea *m_message = nullptr;
    QProgressBar *m_progress = nullptr;
    QPushButton *m_test = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_connect = nullptr;
    Record m_shown;
    bool m_isEdited = false;
    /// What was typed for other connections, by id.
    QHash<QString, Record> m_drafts;
    std::unique_ptr<DXConnectionAttempt> m_attempt;
    /// What the attempt connects with.
    Record m_attempted;
    QTimer m_patience;
};
