// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QStatusBar>
#include <QString>
#include <QTimer>

#include <memory>

class DXQueryTab;
class QLabel;

/// Under a window's tabs: the server, the open transaction and its age, and what the last run
/// yielded; also what the desktop did not tell the user. [main]
class StatusLine final : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    /// Tells of tab from now on, whose server is a product; of nothing when tab is null.
    void follow(DXQueryTab *tab, const QString &product);
    /// Shows a message for some seconds.
    void announce(const QString &text);

private:
    void update();
    QString transactionText() const;

    QPointer<DXQueryTab> m_tab;
    QString m_product;
    QLabel *const m_server;
    QLabel *const m_transaction;
    QLabel *const m_summary;
    QTimer m_clock;
    std::shared_ptr<void> m_notifications;
};
