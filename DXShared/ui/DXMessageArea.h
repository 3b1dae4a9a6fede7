// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QPlainTextEdit>

/// What became of an action, where it was started: plain text that is wrapped and can be selected,
/// as high as it needs up to a few lines, then it scrolls. Hidden while it has nothing to say.
/// [main]
class DXSHARED_EXPORT DXMessageArea final : public QPlainTextEdit
{
    Q_OBJECT

public:
    enum class Kind { Information, Success, Error };

    explicit DXMessageArea(QWidget *parent = nullptr);

    void setMessage(Kind kind, const QString &text);
    void clearMessage();
    QString message() const { return toPlainText(); }
    Kind kind() const { return m_kind; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int neededHeight() const;
    void fit();

    Kind m_kind = Kind::Information;
};
