// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QFrame>

class QLabel;
class QPlainTextEdit;
class QPushButton;

/// What failed and what the server said about it, where it happened: text to select and to copy,
/// never markup. Hidden until there is something to tell. [main]
class DXSHARED_EXPORT DXFailureView final : public QFrame
{
    Q_OBJECT

public:
    explicit DXFailureView(QWidget *parent = nullptr);

    QString headline() const;
    QString text() const;
    /// Shows itself; text may be empty.
    void showFailure(const QString &headline, const QString &text);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyTheme();
    void fitText();

    QLabel *const m_headline;
    QPlainTextEdit *const m_text;
    QPushButton *const m_copy;
};
