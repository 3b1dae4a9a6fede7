// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSavedConnectionsDelegate.h"

#include "ui/DXTheme.h"
#include "ui/connection/DXSavedConnectionsModel.h"

#include <QApplication>
#include <QPainter>

namespace
{

constexpr int padding = 4;
constexpr int dotDiameter = 10;
constexpr int dotColumn = 20;

bool isGroup(const QModelIndex &index)
{
    return index.data(DXSavedConnectionsModel::IsGroupRole).toBool();
}

void paintDot(QPainter &painter, const QRect &column, const QString &color, const QColor &outline)
{
    QRectF dot(0, 0, dotDiameter, dotDiameter);
    dot.moveCenter(QRectF(column).center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color.isEmpty() ? QPen(outline, 1.5) : QPen(Qt::NoPen));
    painter.setBrush(color.isEmpty() ? QBrush() : QBrush(QColor(color)));
    painter.drawEllipse(dot);
}

void paintLine(QPainter &painter, const QRect &line, const QString &text)
{
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
}

} // namespace

QSize DXSavedConnectionsDelegate::sizeHint(const QStyleOptionViewItem &option,
                                           const QModelIndex &index) const
{
    const int lines = isGroup(index) ? 1 : 2;
    return {0, lines * option.fontMetrics.height() + 2 * padding};
}

void DXSavedConnectionsDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    if (isGroup(index)) {
        QStyleOptionViewItem group = option;
        const QColor quiet = DXTheme::of(option.palette).secondaryText;
        group.palette.setColor(QPalette::Text, quiet);
        group.palette.setColor(QPalette::HighlightedText, quiet);
        QStyledItemDelegate::paint(painter, group, index);
        return;
    }
    // The background, selection and focus are the style's own.
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    const QStyle *const style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
    painter->save();
    paintEntry(*painter, option, index);
    painter->restore();
}

void DXSavedConnectionsDelegate::paintEntry(QPainter &painter, const QStyleOptionViewItem &option,
                                            const QModelIndex &index)
{
    const DXTheme &theme = DXTheme::of(option.palette);
    const QRect inner = option.rect.adjusted(0, padding, -padding, -padding);
    const int lineHeight = option.fontMetrics.height();
    paintDot(painter, QRect(inner.left(), inner.top(), dotColumn, lineHeight),
             index.data(DXSavedConnectionsModel::ColorRole).toString(), theme.secondaryText);
    const QRect name(inner.left() + dotColumn + padding, inner.top(),
                     inner.width() - dotColumn - padding, lineHeight);
    painter.setFont(option.font);
    painter.setPen(theme.text);
    paintLine(painter, name, index.data(Qt::DisplayRole).toString());
    painter.setPen(theme.secondaryText);
    paintLine(painter, name.translated(0, lineHeight),
              index.data(DXSavedConnectionsModel::SecondaryRole).toString());
}
