// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QWidget>

class QLabel;

/// An editor of a form with room for two lines below it: a quiet hint, and what is wrong with what
/// the user typed. [main]
class DXSHARED_EXPORT DXFormField final : public QWidget
{
    Q_OBJECT

public:
    /// Takes editor, which also takes the keyboard for this.
    explicit DXFormField(QWidget *editor, QWidget *parent = nullptr);

    /// Nothing for an empty text.
    void setHint(const QString &hint);
    /// Shown until another text comes; a problem hides the hint, an empty text brings it back.
    void setProblem(const QString &problem);
    QString problem() const { return m_problemText; }
    /// To the keyboard.
    void takeFocus();

private:
    void show();

    QWidget *const m_editor;
    QLabel *const m_message;
    QString m_hint;
    QString m_problemText;
};
