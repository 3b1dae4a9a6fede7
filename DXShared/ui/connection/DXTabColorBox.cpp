// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXTabColorBox.h"

#include "client/DXDBCTabColorHelper.h"
#include "ui/DXTheme.h"

#include <QPainter>
#include <QPixmap>

namespace
{

constexpr int dotSize = 16;
// Sharp on every screen that is sold.
constexpr int dotScale = 4;

} // namespace

DXTabColorBox::DXTabColorBox(QWidget *parent)
    : QComboBox(parent)
{
    // In the order of DXDBCTabColorHelper::colors().
    const QStringList names{
        tr("Red (production)"), tr("Blue"),  tr("Green"), tr("Amber"), tr("Violet"), tr("Teal"),
        tr("Magenta"),          tr("Olive"), tr("Slate")};
    setAccessibleName(tr("Colour of the tabs"));
    addItem(dot({}, palette()), tr("By the name"), QString());
    const QStringList colors = DXDBCTabColorHelper::colors();
    for (qsizetype i = 0; i < colors.size(); ++i)
        addItem(dot(colors[i], palette()), names.value(i, colors[i]), colors[i]);
}

QString DXTabColorBox::color() const
{
    return currentData().toString();
}

void DXTabColorBox::setColor(const QString &color)
{
    int index = findData(color);
    // One of another version's set, which must not be lost.
    if (index < 0) {
        addItem(dot(color, palette()), color, color);
        index = count() - 1;
    }
    setCurrentIndex(color.isEmpty() ? 0 : index);
}

void DXTabColorBox::setAlias(const QString &alias)
{
    m_alias = alias;
    setItemIcon(0, dot(DXDBCTabColorHelper::colorForAlias(alias), palette()));
}

QString DXTabColorBox::effectiveColor() const
{
    return color().isEmpty() ? DXDBCTabColorHelper::colorForAlias(m_alias) : color();
}

QIcon DXTabColorBox::dot(const QString &color, const QPalette &palette)
{
    QPixmap picture(dotSize * dotScale, dotSize * dotScale);
    picture.setDevicePixelRatio(dotScale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (color.isEmpty()) {
        painter.setPen(QPen(DXTheme::of(palette).secondaryText, 1.5));
        painter.drawEllipse(QRectF(3.5, 3.5, 9, 9));
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(color));
        painter.drawEllipse(QRectF(3, 3, 10, 10));
    }
    return picture;
}
