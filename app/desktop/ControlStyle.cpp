// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ControlStyle.h"

#include "ui/DXTheme.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace
{

using State = QStyle::State;

constexpr qreal rounding = 3;

bool isMarked(State state)
{
    return state & (QStyle::State_On | QStyle::State_NoChange);
}

bool hasFocus(State state)
{
    return (state & QStyle::State_HasFocus) && (state & QStyle::State_KeyboardFocusChange);
}

QColor frameColor(const DXTheme &theme, State state)
{
    if (!(state & QStyle::State_Enabled)) {
        QColor faint = theme.null;
        faint.setAlphaF(0.5);
        return faint;
    }
    if (hasFocus(state))
        return theme.text;
    return isMarked(state) || (state & QStyle::State_MouseOver) ? theme.accent : theme.null;
}

QColor fillColor(const DXTheme &theme, State state)
{
    if (!(state & QStyle::State_Enabled))
        return theme.window;
    if (isMarked(state))
        return theme.accent;
    return state & QStyle::State_Sunken ? theme.selection : theme.surface;
}

void drawMark(QPainter &painter, const QRectF &box, State state, const QColor &color)
{
    const auto at = [&box](qreal x, qreal y) {
        return box.topLeft() + QPointF(x * box.width(), y * box.height());
    };
    painter.setPen(QPen(color, box.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (state & QStyle::State_NoChange)
        painter.drawLine(at(0.27, 0.5), at(0.73, 0.5));
    else
        painter.drawPolyline(QPolygonF{at(0.24, 0.53), at(0.43, 0.71), at(0.77, 0.31)});
}

void drawDot(QPainter &painter, const QRectF &box, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const qreal radius = box.width() / 5;
    painter.drawEllipse(box.center(), radius, radius);
}

void drawIndicator(QPainter &painter, const QStyleOption &option, bool isRound)
{
    const DXTheme &theme = DXTheme::of(option.palette);
    const qreal side = std::min(option.rect.width(), option.rect.height());
    QRectF box(0, 0, side, side);
    // On the middle of its pixels a line of one is as sharp as it can be.
    box.moveCenter(QRectF(option.rect).center());
    box.moveTopLeft(QPointF(box.topLeft().toPoint()));
    box.adjust(0.5, 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(frameColor(theme, option.state), hasFocus(option.state) ? 1.5 : 1));
    painter.setBrush(fillColor(theme, option.state));
    const qreal radius = isRound ? side / 2 : rounding;
    painter.drawRoundedRect(box, radius, radius);
    const QColor mark = option.state & QStyle::State_Enabled ? theme.surface : theme.null;
    if (isMarked(option.state) && isRound)
        drawDot(painter, box, mark);
    else if (isMarked(option.state))
        drawMark(painter, box, option.state, mark);
    painter.restore();
}

void drawFrame(QPainter &painter, const QStyleOption &option)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const DXTheme &theme = DXTheme::of(option.palette);
    const State focused = QStyle::State_Enabled | QStyle::State_HasFocus;
    painter.setPen((option.state & focused) == focused ? theme.accent
                                                       : frameColor(theme, option.state));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), rounding, rounding);
    painter.restore();
}

void drawButton(QPainter &painter, const QStyleOption &option)
{
    const DXTheme &theme = DXTheme::of(option.palette);
    const auto *const button = qstyleoption_cast<const QStyleOptionButton *>(&option);
    const bool isDefault = button && (button->features & QStyleOptionButton::DefaultButton);
    State state = option.state;
    state.setFlag(QStyle::State_On, isDefault);
    const bool isDown = option.state & (QStyle::State_Sunken | QStyle::State_On);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(frameColor(theme, state), hasFocus(state) ? 1.5 : 1));
    painter.setBrush(!(state & QStyle::State_Enabled) ? theme.window
                     : isDown                         ? theme.selection
                                                      : theme.surface);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), rounding, rounding);
    painter.restore();
}

} // namespace

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                 QPainter *painter, const QWidget *widget) const
{
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck)
        drawIndicator(*painter, *option, false);
    else if (element == PE_IndicatorRadioButton)
        drawIndicator(*painter, *option, true);
    else if (element == PE_PanelButtonCommand)
        drawButton(*painter, *option);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox || control == CC_SpinBox)
        drawFrame(*painter, *option);
}
