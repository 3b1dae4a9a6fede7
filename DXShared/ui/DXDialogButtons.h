// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QWidget>

class QDialog;
class QPushButton;

/// The last row of a sheet: "Cancel", and at the end the button that does it, on every desktop.
/// [main]
class DXSHARED_EXPORT DXDialogButtons final : public QWidget
{
    Q_OBJECT

public:
    /// acceptText is the verb of what is done; for an empty one there is only "Cancel". Put the row
    /// into dialog's layout before makeDefault().
    DXDialogButtons(QDialog &dialog, const QString &acceptText);

    enum class Default { Accept, Cancel };
    /// What Return does.
    void makeDefault(Default which);

private:
    QPushButton *const m_cancel;
    QPushButton *const m_accept;
};
