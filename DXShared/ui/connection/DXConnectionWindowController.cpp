// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXConnectionWindowController.h"

#include "dispatch/DXDispatch.h"
#include "ui/connection/DXConnectionDialog.h"
#include "ui/connection/DXConnectionForm.h"

DXConnectionWindowController::DXConnectionWindowController(SQLRecentConnectionList &list)
    : m_list(list)
{ }

DXConnectionWindowController::~DXConnectionWindowController()
{
    // A sheet without its controller would connect to nobody.
    delete m_dialog;
}

DXConnectionDialog *DXConnectionWindowController::dialog() const
{
    return m_dialog;
}

void DXConnectionWindowController::open(QWidget *parent)
{
    DX_ASSERT_MAIN();
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    DXConnectionForm *const form = createForm();
    m_dialog = new DXConnectionDialog({.list = m_list,
                                       .form = form,
                                       .title = title(),
                                       .record = initialRecord(),
                                       .notSaved = notSavedHandler(),
                                       .newRecord = [this] { return newRecord(); },
                                       .parent = parent});
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_dialog, &DXConnectionDialog::connected, this,
            &DXConnectionWindowController::connected);
    connect(m_dialog, &QDialog::finished, this, &DXConnectionWindowController::closed,
            Qt::QueuedConnection);
    m_dialog->open();
    form->takeFocus();
}

std::function<void(const DXError &)> DXConnectionWindowController::notSavedHandler()
{
    return [self = QPointer(this)](const DXError &error) {
        if (self && error)
            Q_EMIT self->notSaved(error);
    };
}

bool DXConnectionWindowController::openAfterFailure(QWidget *parent, const QString &connectionId,
                                                    const DXConnectionAttempt::Result &result)
{
    if (m_dialog && m_dialog->shownId().compare(connectionId, Qt::CaseInsensitive) != 0)
        return false;
    open(parent);
    m_dialog->showFailure(result);
    return true;
}
