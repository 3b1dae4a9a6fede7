// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXLabels.h"

#include <QLabel>

QLabel *DXLabels::plain(const QString &text)
{
    auto *const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel *DXLabels::of(const QString &name, QWidget *editor)
{
    auto *const label = new QLabel(name);
    label->setBuddy(editor);
    label->setFixedHeight(editor->sizeHint().height());
    return label;
}
