// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QWidget>

class QLineEdit;

/// A path that is typed, or picked in the desktop's own dialog. [main]
class DXSHARED_EXPORT DXFileField final : public QWidget
{
    Q_OBJECT

public:
    /// name is what the file is, for the dialog's title and for those who do not see the label.
    explicit DXFileField(const QString &name, QWidget *parent = nullptr);

    /// As typed, without blanks around it; "~/" stands for the home folder.
    QString path() const;
    void setPath(const QString &path);
    void setPlaceholderText(const QString &text);

Q_SIGNALS:
    /// By the user.
    void edited();

private:
    void choose();

    const QString m_name;
    QLineEdit *const m_line;
};
