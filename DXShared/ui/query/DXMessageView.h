// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QPlainTextEdit>
#include <QTime>

/// What a query tab has to say, line by line, each with the time it came; can be selected and
/// copied. The last 10,000 messages are kept, and a line above them tells how many came before.
/// Nothing that a server sends is taken for markup. [main]
class DXSHARED_EXPORT DXMessageView final : public QPlainTextEdit
{
    Q_OBJECT

public:
    enum class Kind { Information, Success, Notice, Error };
    struct Message
    {
        Kind kind;
        QTime time;
        QString text;
    };

    explicit DXMessageView(QWidget *parent = nullptr);

    /// Appends a message that came now; of a very long one the beginning, and how long it is.
    void append(Kind kind, const QString &text);
    /// Appends many in one step; leftOut is how many more came before them that nobody kept.
    void append(const QList<Message> &messages, qint64 leftOut = 0);
    /// Takes away all messages.
    void reset();

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Shown
    {
        Message message;
        int lines;
    };

    void show(QTextCursor &cursor, const Message &message);
    void leaveOut(QTextCursor &cursor, qsizetype shown, qint64 others);

    QList<Shown> m_shown;
    qint64 m_leftOut = 0;
};
