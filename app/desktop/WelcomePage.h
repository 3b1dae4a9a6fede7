// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QVBoxLayout;

/// What stands in the window while no tab is open: what to do next. [main]
class WelcomePage final : public QWidget
{
    Q_OBJECT

public:
    explicit WelcomePage(QWidget *parent = nullptr);

    /// Puts the list of saved connections under the buttons.
    void setList(QWidget *list);
    /// Offers the demo database.
    void offerDemo();

Q_SIGNALS:
    void newConnectionRequested();
    void demoRequested();

private:
    QVBoxLayout *m_column = nullptr;
    class QHBoxLayout *m_buttons = nullptr;
};
