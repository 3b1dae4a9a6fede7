// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QFrame>

class QLabel;
class QPlainTextEdit;
class QPushButton;

/// What failed and what the server said about it, where it happened: text to select and to copy,
/// never markup; or a note about what the user knows already. Hidden until there is something to
/// tell. [main]
class DXSHARED_EXPORT DXFailureView final : public QFrame
{
    Q_OBJECT

public:
    explicit DXFailureView(QWidget *parent = nullptr);

    QString headline() const;
    QString text() const;
    /// Shows itself; text may be empty.
    void showFailure(const QString &headline, const QString &text);
    void showNote(const QString &headline);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Kind { Failure, Note };

    void tell(Kind kind, const QString &headline, const QString &text);
    void applyTheme();
    void fitText();

    Kind m_kind = Kind::Failure;
    QLabel *const m_headline;
    QPlainTextEdit *const m_text;
    QPushButton *const m_copy;
};
