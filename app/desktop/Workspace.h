// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class DXFailureList;
class Documents;
class QFrame;
class QStackedWidget;
class TableExports;
class WelcomePage;

/// What stands beside the sidebar: the query tabs below a line in the colour of their connection,
/// or the welcome page while there are none; above, what failed outside of any tab, and below, the
/// tables that are being exported. [main]
class Workspace final : public QWidget
{
    Q_OBJECT

public:
    /// Takes both widgets.
    Workspace(WelcomePage *welcome, Documents *documents, QWidget *parent = nullptr);

    DXFailureList &failures() const { return *m_failures; }
    TableExports &exports() const { return *m_exports; }
    enum class Shown { Welcome, Tabs };
    void show(Shown what);
    /// As CSS writes colours; null for a connection without one.
    void setColor(const QString &color);

private:
    DXFailureList *const m_failures;
    QFrame *const m_colorLine;
    QStackedWidget *const m_pages;
    TableExports *const m_exports;
};
