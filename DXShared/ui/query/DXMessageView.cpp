// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXMessageView.h"

#include "ui/DXLongText.h"
#include "ui/DXTheme.h"

#include <QEvent>
#include <QFontDatabase>
#include <QLocale>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <numeric>
#include <utility>

namespace
{

// A loop that raises a notice for each row must not fill the memory.
constexpr qsizetype mostMessages = 10000;

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

// Of a long text the beginning, and how long it is.
QString shownText(const QString &text)
{
    const QString shown = DXLongText::shownPart(text);
    if (shown.size() == text.size())
        return text;
    return shown
           + DXMessageView::tr("…\nThis is the beginning of %1 characters.")
                 .arg(QLocale().toString(text.size()));
}

} // namespace

DXMessageView::DXMessageView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("Messages"));
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // What is taken away would be kept to be brought back.
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(8);
}

void DXMessageView::append(Kind kind, const QString &text)
{
    append({{kind, QTime::currentTime(), text}});
}

void DXMessageView::append(const QList<Message> &messages, qint64 leftOut)
{
    QScrollBar &bar = *verticalScrollBar();
    const bool isAtEnd = bar.value() == bar.maximum();
    const qsizetype first = std::max<qsizetype>(0, messages.size() - mostMessages);
    const qsizetype surplus =
        std::max<qsizetype>(0, m_shown.size() + messages.size() - first - mostMessages);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    leaveOut(cursor, surplus, leftOut + first);
    for (const Message &message : messages.sliced(first))
        show(cursor, {message.kind, message.time, shownText(message.text)});
    cursor.endEditBlock();
    if (isAtEnd)
        bar.setValue(bar.maximum());
}

void DXMessageView::reset()
{
    m_shown.clear();
    m_leftOut = 0;
    clear();
    setWordWrapMode(DXLongText::wrapMode({}));
}

void DXMessageView::show(QTextCursor &cursor, const Message &message)
{
    if (const auto mode = DXLongText::wrapMode(message.text); mode == QTextOption::WrapAnywhere)
        setWordWrapMode(mode);
    const DXTheme &theme = DXTheme::of(palette());
    cursor.movePosition(QTextCursor::End);
    if (!document()->isEmpty())
        cursor.insertBlock();
    const int linesBefore = document()->blockCount() - 1;
    QTextCharFormat format;
    format.setForeground(theme.secondaryText);
    cursor.insertText(message.time.toString(QStringLiteral("HH:mm:ss  ")), format);
    format.setForeground(colorOf(message.kind, theme));
    cursor.insertText(message.text, format);
    m_shown.append({message, document()->blockCount() - linesBefore});
}

// Takes away the first messages that are shown, and counts further ones that never were.
void DXMessageView::leaveOut(QTextCursor &cursor, qsizetype shown, qint64 others)
{
    if (shown + others == 0)
        return;
    const auto end = m_shown.cbegin() + shown;
    const int lines = std::accumulate(m_shown.cbegin(), end, m_leftOut > 0 ? 1 : 0,
                                      [](int sum, const Shown &each) { return sum + each.lines; });
    m_shown.erase(m_shown.cbegin(), end);
    m_leftOut += shown + others;

    cursor.movePosition(QTextCursor::Start);
    const QTextBlock rest = document()->findBlockByNumber(lines);
    if (rest.isValid())
        cursor.setPosition(rest.position(), QTextCursor::KeepAnchor);
    else
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    QTextCharFormat format;
    format.setForeground(DXTheme::of(palette()).secondaryText);
    cursor.insertText(
        m_leftOut == 1
            ? tr("1 earlier message was left out.")
            : tr("%1 earlier messages were left out.").arg(QLocale().toString(m_leftOut)),
        format);
    if (!m_shown.isEmpty())
        cursor.insertBlock();
}

void DXMessageView::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    const QList<Shown> shown = std::exchange(m_shown, {});
    const qint64 leftOut = std::exchange(m_leftOut, 0);
    clear();
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    leaveOut(cursor, 0, leftOut);
    for (const Shown &each : shown)
        show(cursor, each.message);
    cursor.endEditBlock();
}
