// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QElapsedTimer>
#include <QStyledItemDelegate>

/// Draws an entry of a catalogue tree: image, name, and the secondary text in a quieter colour; a
/// turning arc while its children load, a mark when they could not be. [main]
class DXSHARED_EXPORT DXDatabaseTreeItemDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit DXDatabaseTreeItemDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void drawArc(QPainter &painter, const QRect &place, const QColor &color) const;

    QElapsedTimer m_clock;
};
