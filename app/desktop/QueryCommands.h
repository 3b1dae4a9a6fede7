// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class ActionSet;
class DXQueryTab;
class DXResultPage;

/// The commands on the query tab that is looked at, enabled where they can do something. [main]
class QueryCommands final : public QObject
{
    Q_OBJECT

public:
    explicit QueryCommands(ActionSet &actions, QObject *parent = nullptr);

    /// Null for none.
    void follow(DXQueryTab *tab);

private:
    void connectEditing();
    void connectRunning();
    void connectResults();
    void update();
    void showCopyMenu();

    ActionSet &m_actions;
    QPointer<DXQueryTab> m_tab;
};
