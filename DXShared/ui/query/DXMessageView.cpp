// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXMessageView.h"

#include "ui/DXTheme.h"

#include <QEvent>
#include <QFontDatabase>

namespace
{

// A loop that raises a notice for each row must not fill the memory.
constexpr int mostMessages = 10000;

QColor colorOf(DXMessageView::Kind kind, const DXTheme &theme)
{
    switch (kind) {
    case DXMessageView::Kind::Success:
        return theme.success;
    case DXMessageView::Kind::Notice:
        return theme.warning;
    case DXMessageView::Kind::Error:
        return theme.danger;
    case DXMessageView::Kind::Information:
        break;
    }
    return theme.text;
}

} // namespace

DXMessageView::DXMessageView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("Messages"));
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setMaximumBlockCount(mostMessages);
    document()->setDocumentMargin(8);
}

void DXMessageView::append(Kind kind, const QString &text)
{
    m_messages.append({kind, QTime::currentTime(), text});
    if (m_messages.size() > mostMessages)
        m_messages.removeFirst();
    show(m_messages.constLast());
}

void DXMessageView::reset()
{
    m_messages.clear();
    clear();
}

void DXMessageView::show(const Message &message)
{
    const DXTheme &theme = DXTheme::of(palette());
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    if (!document()->isEmpty())
        cursor.insertBlock();
    QTextCharFormat format;
    format.setForeground(theme.secondaryText);
    cursor.insertText(message.time.toString(QStringLiteral("HH:mm:ss  ")), format);
    format.setForeground(colorOf(message.kind, theme));
    cursor.insertText(message.text, format);
}

void DXMessageView::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    clear();
    for (const Message &message : std::as_const(m_messages))
        show(message);
}
