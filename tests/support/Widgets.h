// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DXWait.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>

/// How tests drive windows as their users do: by what a control is called. [main]
namespace Widgets
{

/// The shown control of this kind whose accessible name, or text without its mnemonic, is name;
/// fails the running test when there is none.
template<typename Kind>
Kind *named(QWidget *window, const QString &name)
{
    if (window) {
        const QList<Kind *> all = window->findChildren<Kind *>();
        for (Kind *const widget : all) {
            const QString text = widget->property("text").toString().remove(u'&');
            if (widget->isVisible() && (widget->accessibleName() == name || text == name))
                return widget;
        }
    }
    ADD_FAILURE() << "There is no control called " << qPrintable(name);
    return nullptr;
}

/// Replaces what is in the field as somebody who types.
template<typename Field>
void type(QWidget *window, const QString &name, const QString &text)
{
    auto *const field = named<Field>(window, name);
    ASSERT_TRUE(field);
    field->setFocus();
    QTest::keySequence(field, QKeySequence::SelectAll);
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

template<typename Button>
void click(QWidget *window, const QString &name)
{
    auto *const button = named<Button>(window, name);
    ASSERT_TRUE(button);
    QTest::mouseClick(button, Qt::LeftButton);
}

/// The shown window of this kind that lies above everything else of its kind, once there is one.
template<typename Window>
Window *opened()
{
    Window *found = nullptr;
    const auto find = [&found] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *const window : windows) {
            if (window->isVisible())
                found = qobject_cast<Window *>(window) ? qobject_cast<Window *>(window) : found;
        }
        return found != nullptr;
    };
    EXPECT_TRUE(DXWait::until(find));
    return found;
}

} // namespace Widgets
