// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/WelcomePage.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
constexpr int columnWidth = 480;
}

WelcomePage::WelcomePage(QWidget *parent)
    : QWidget(parent)
{
    auto *const heading = new QLabel(tr("Where to?"));
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    heading->setFont(large);
    auto *const hint = new QLabel(
        tr("Connect to a server and its catalogue opens at the side. Ctrl+Shift+P lists every "
           "command."));
    hint->setWordWrap(true);

    auto *const connectButton = new QPushButton(tr("&New connection…"));
    connectButton->setDefault(true);
    connect(connectButton, &QPushButton::clicked, this, &WelcomePage::newConnectionRequested);
    m_buttons = new QHBoxLayout;
    m_buttons->setSpacing(8);
    m_buttons->addWidget(connectButton);
    m_buttons->addStretch();

    auto *const column = new QWidget;
    column->setMaximumWidth(columnWidth);
    m_column = new QVBoxLayout(column);
    m_column->setContentsMargins(16, 16, 16, 16);
    m_column->setSpacing(16);
    m_column->addWidget(heading);
    m_column->addWidget(hint);
    m_column->addLayout(m_buttons);
    auto *const layout = new QHBoxLayout(this);
    layout->addStretch(1);
    layout->addWidget(column, 4, Qt::AlignVCenter);
    layout->addStretch(1);
    setFocusProxy(connectButton);
}

void WelcomePage::setList(QWidget *list)
{
    m_column->addWidget(list, 1);
}

void WelcomePage::offerDemo()
{
    auto *const demo = new QPushButton(tr("&Try the demo database"));
    connect(demo, &QPushButton::clicked, this, &WelcomePage::demoRequested);
    m_buttons->insertWidget(1, demo);
}
