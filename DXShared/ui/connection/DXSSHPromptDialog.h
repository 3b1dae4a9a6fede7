// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;

/// One question of ssh: for a secret, for the trust in a host's key, for a permission, or a notice
/// that it waits for something. The text is ssh's own, shown as it is. [main]
class DXSHARED_EXPORT DXSSHPromptDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Whether ssh asked the same before, and refused the answer.
    enum class Attempt { First, Again };
    /// hint is SSH_ASKPASS_PROMPT as ssh sets it (ssh(1)).
    DXSSHPromptDialog(const QByteArray &hint, const QString &text, Attempt attempt,
                      QWidget *parent);

    /// What ssh is to read, once the dialog was accepted.
    QString answer() const;
    /// Whether the answer may be given again without asking.
    bool isToBeRemembered() const;

private:
    enum class Kind { Secret, HostKey, Permission, Notice };
    static Kind kindOf(const QByteArray &hint, const QString &text);
    QString heading(Attempt attempt) const;
    QString acceptText() const;

    const Kind m_kind;
    QLineEdit *m_secret = nullptr;
    QCheckBox *m_remember = nullptr;
};
