// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Workspace.h"

#include "desktop/TableExports.h"
#include "desktop/WelcomePage.h"
#include "desktop/documents/Documents.h"
#include "ui/DXFailureList.h"
#include "ui/DXTheme.h"

#include <QFrame>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace
{

constexpr int colorLineHeight = 3;

QVBoxLayout *createColumn(QWidget *widget)
{
    auto *const column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    return column;
}

} // namespace

Workspace::Workspace(WelcomePage *welcome, Documents *documents, QWidget *parent)
    : QWidget(parent)
    , m_failures(new DXFailureList)
    , m_colorLine(new QFrame)
    , m_pages(new QStackedWidget)
    , m_exports(new TableExports)
{
    m_colorLine->setFixedHeight(colorLineHeight);
    m_colorLine->setAutoFillBackground(true);
    auto *const work = new QWidget;
    QVBoxLayout *const tabs = createColumn(work);
    tabs->addWidget(m_colorLine);
    tabs->addWidget(documents);
    m_pages->addWidget(welcome);
    m_pages->addWidget(work);
    QVBoxLayout *const column = createColumn(this);
    column->addWidget(m_failures);
    column->addWidget(m_pages, 1);
    column->addWidget(m_exports);
}

void Workspace::show(Shown what)
{
    m_pages->setCurrentIndex(what == Shown::Tabs ? 1 : 0);
}

void Workspace::setColor(const QString &color)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Window, color.isNull() ? DXTheme::of(colors).window : QColor(color));
    m_colorLine->setPalette(colors);
}
