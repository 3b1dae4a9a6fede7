// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

/// Draws a candidate: its icon, its name, and at the right edge, quieter, where it is from. [main]
class DXCompletionDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit DXCompletionDelegate(QObject *parent = nullptr);

    /// Whether the current row was chosen, or only is what Tab would take.
    void setChosen(bool yes) { m_isChosen = yes; }
    /// From a row's left edge to its name.
    static int textOffset();
    /// What a row needs to show everything.
    static int widthOf(const QModelIndex &index, const QFontMetrics &metrics);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    bool m_isChosen = false;
};
