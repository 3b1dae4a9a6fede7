// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXCompletionDelegate.h"

#include "ui/DXTheme.h"
#include "ui/editor/DXCompletionModel.h"

#include <QIcon>
#include <QPainter>

namespace
{

constexpr int padding = 8;
constexpr int iconSize = 16;
constexpr int gap = 24;
// What widths in whole pixels may lack on a scaled screen.
constexpr int rounding = 4;

} // namespace

DXCompletionDelegate::DXCompletionDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{ }

int DXCompletionDelegate::textOffset()
{
    return padding + iconSize + padding;
}

int DXCompletionDelegate::widthOf(const QModelIndex &index, const QFontMetrics &metrics)
{
    const QString secondary = index.data(DXCompletionModel::SecondaryRole).toString();
    const int name = metrics.horizontalAdvance(index.data().toString());
    return textOffset() + name + (secondary.isEmpty() ? 0 : gap)
           + metrics.horizontalAdvance(secondary) + padding + rounding;
}

QSize DXCompletionDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {option.rect.width(), option.fontMetrics.height() + 8};
}

void DXCompletionDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    const DXTheme &theme = DXTheme::of(option.palette);
    const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    if (isCurrent && m_isChosen) {
        painter->fillRect(option.rect, theme.selection);
    } else if (isCurrent) {
        painter->setPen(theme.accent);
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
    const QIcon icon = index.data(Qt::DecorationRole).value<QIcon>();
    icon.paint(painter, QRect(option.rect.left() + padding,
                              option.rect.center().y() - iconSize / 2 + 1, iconSize, iconSize));
    const QRect text = option.rect.adjusted(textOffset(), 0, -padding, 0);
    const QFontMetrics metrics(option.font);
    const QString name = metrics.elidedText(index.data().toString(), Qt::ElideMiddle, text.width());
    const int room = text.width() - metrics.horizontalAdvance(name) - gap;
    painter->setFont(option.font);
    painter->setPen(theme.text);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
    painter->setPen(theme.secondaryText);
    const QString secondary = index.data(DXCompletionModel::SecondaryRole).toString();
    if (room > 0)
        painter->drawText(text, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                          metrics.elidedText(secondary, Qt::ElideMiddle, room));
    painter->restore();
}
