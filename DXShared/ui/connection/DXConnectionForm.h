// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QWidget>

#include <memory>

class SQLRecentConnection;

/// The part of the connection dialog that a driver supplies: it shows and edits one record of a
/// saved connection, which it never changes itself. [main]
class DXSHARED_EXPORT DXConnectionForm : public QWidget
{
    Q_OBJECT

public:
    using Record = std::shared_ptr<SQLRecentConnection>;
    using QWidget::QWidget;

    /// Shows record; whatever was typed before is replaced.
    virtual void setRecord(const SQLRecentConnection &record) = 0;
    /// A new record of what is shown, with the identity of the one that setRecord() was given.
    virtual Record record() const = 0;
    /// Marks each field that cannot be as it is and puts the keyboard into the first of them. True
    /// when there is none.
    virtual bool validate() = 0;
    /// Marks the field that made connecting fail, if one can be told from the error.
    virtual void showFailure(const DXError &error) = 0;
    /// Puts the keyboard into the password's field, with message at it.
    virtual void askForPassword(const QString &message) = 0;
    /// Puts the keyboard where somebody who fills the form begins.
    virtual void takeFocus() = 0;

Q_SIGNALS:
    /// The user changed something.
    void edited();
};
