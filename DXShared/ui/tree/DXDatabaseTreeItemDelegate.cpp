// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree/DXDatabaseTreeItemDelegate.h"

#include "ui/DXIcon.h"
#include "ui/DXTheme.h"
#include "ui/tree/DXDatabaseTreeModel.h"

#include <QApplication>
#include <QPainter>

namespace
{

constexpr int iconSize = 16;
constexpr int spacing = 4;
constexpr int detailsSpacing = 8;

} // namespace

DXDatabaseTreeItemDelegate::DXDatabaseTreeItemDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
    m_clock.start();
}

QSize DXDatabaseTreeItemDelegate::sizeHint(const QStyleOptionViewItem &option,
                                           const QModelIndex &index) const
{
    Q_UNUSED(index)
    return {0, option.fontMetrics.height() + 8};
}

void DXDatabaseTreeItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    const DXTheme &theme = DXTheme::of(option.palette);
    painter->save();
    const QStyle *const style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);

    QRect rest = option.rect.adjusted(spacing, 0, -spacing, 0);
    const QRect place(rest.left(), rest.center().y() - iconSize / 2 + 1, iconSize, iconSize);
    if (index.data(DXDatabaseTreeModel::LoadingRole).toBool())
        drawArc(*painter, place, theme.accent);
    else
        DXIcon::named(index.data(Qt::DecorationRole).toString(), option.palette)
            .paint(painter, place);
    rest.setLeft(place.right() + 1 + spacing + 2);

    // What a failed load left is at the end, where it is seen whatever the name is.
    if (!index.data(DXDatabaseTreeModel::FailureRole).toString().isEmpty()) {
        const QRect mark(rest.right() + 1 - iconSize, place.top(), iconSize, iconSize);
        DXIcon::named(QStringLiteral("DatabaseTree-Error"), option.palette).paint(painter, mark);
        rest.setRight(mark.left() - spacing);
    }

    // What a server sends is plain text, in one line.
    const auto draw = [&](const QString &text, const QColor &color) {
        const QString line = option.fontMetrics.elidedText(
            QString(text).replace(u'\n', QChar(0x2424)), Qt::ElideRight, rest.width());
        painter->setPen(color);
        painter->drawText(rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, line);
        rest.setLeft(rest.left() + option.fontMetrics.horizontalAdvance(line) + detailsSpacing);
    };
    draw(index.data().toString(), theme.text);
    if (rest.width() > 0)
        draw(index.data(DXDatabaseTreeModel::DetailsRole).toString(), theme.secondaryText);
    painter->restore();
}

void DXDatabaseTreeItemDelegate::drawArc(QPainter &painter, const QRect &place,
                                         const QColor &color) const
{
    constexpr int turn = 360 * 16; // QPainter counts sixteenths of a degree
    constexpr qint64 turnTime = 900;
    const int begin = -static_cast<int>(m_clock.elapsed() % turnTime * turn / turnTime);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(place.adjusted(3, 3, -3, -3), begin, turn * 3 / 4);
}
