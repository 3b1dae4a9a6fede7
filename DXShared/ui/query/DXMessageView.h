// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QPlainTextEdit>
#include <QTime>

/// What a query tab has to say, line by line, each with the time it came; can be selected and
/// copied. Nothing that a server sends is taken for markup. [main]
class DXSHARED_EXPORT DXMessageView final : public QPlainTextEdit
{
    Q_OBJECT

public:
    enum class Kind { Information, Success, Notice, Error };

    explicit DXMessageView(QWidget *parent = nullptr);

    void append(Kind kind, const QString &text);
    /// Takes away all messages.
    void reset();

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Message
    {
        Kind kind;
        QTime time;
        QString text;
    };

    void show(const Message &message);

    QList<Message> m_messages;
};
