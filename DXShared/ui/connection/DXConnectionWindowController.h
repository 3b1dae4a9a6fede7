// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnectionList.h"
#include "core/DXGlobal.h"
#include "ui/connection/DXConnectionAttempt.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class DXConnectionDialog;
class DXConnectionForm;
class DabroDBC;

/// The connection dialog of a driver, for the record that made this (see
/// DabroDBC::createConnectionWindowController()): one that is saved is edited, any other begins a
/// new connection. Keep it until closed() came. [main]
class DXSHARED_EXPORT DXConnectionWindowController : public QObject
{
    Q_OBJECT

public:
    ~DXConnectionWindowController() override;

    /// Opens the dialog as a sheet of parent and returns; a second call brings it to the front.
    void open(QWidget *parent);
    /// Opens it with the reason why connecting with the record that has this id failed elsewhere;
    /// what is missing, such as a password, has the keyboard. False, and nothing is shown, when it
    /// is open and shows another record.
    bool openAfterFailure(QWidget *parent, const QString &connectionId,
                          const DXConnectionAttempt::Result &result);
    /// The dialog while it is open, else null.
    DXConnectionDialog *dialog() const;

Q_SIGNALS:
    /// After a real connect with these details, which the saved connections now hold.
    void connected(const std::shared_ptr<DabroDBC> &details);
    /// They connect, but the saved connections do not hold them.
    void notSaved(const DXError &error);
    /// The dialog is gone, connected or not.
    void closed();

protected:
    using Record = SQLRecentConnectionList::Record;

    /// list outlives this.
    explicit DXConnectionWindowController(SQLRecentConnectionList &list);

    SQLRecentConnectionList &list() const { return m_list; }
    virtual QString title() const = 0;
    /// The driver's form; the caller takes it.
    virtual DXConnectionForm *createForm() = 0;
    /// What the dialog shows first, with an id.
    virtual Record initialRecord() const = 0;
    /// What a new connection begins with, with an id.
    virtual Record newRecord() const = 0;

private:
    std::function<void(const DXError &)> notSavedHandler();

    SQLRecentConnectionList &m_list;
    QPointer<DXConnectionDialog> m_dialog;
};
