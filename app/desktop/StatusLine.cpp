// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/StatusLine.h"

#include "client/DabroDBC.h"
#include "core/DXNotificationCenter.h"
#include "ui/DXAlwaysVisibleUserNotification.h"
#include "ui/DXDurationText.h"
#include "ui/DXTheme.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"

#include <QLabel>

namespace
{

constexpr int messageMilliseconds = 8000;

QString serverText(const DXQueryTab &tab, const QString &product)
{
    const DXQuerySession &session = tab.session();
    const DabroDBC &details = *tab.details();
    const QString login = details.database().isEmpty()
                              ? details.username()
                              : details.username() + u'@' + details.database();
    if (session.serverVersion().isNull())
        return login;
    QStringList parts{product + u' ' + session.serverVersion(), login};
    // None once the connection was lost.
    if (!session.connectionSummary().isEmpty())
        parts.append(session.connectionSummary());
    return parts.join(QStringLiteral(" · "));
}

} // namespace

StatusLine::StatusLine(QWidget *parent)
    : QStatusBar(parent)
    , m_server(new QLabel)
    , m_transaction(new QLabel)
    , m_summary(new QLabel)
{
    setSizeGripEnabled(false);
    for (QLabel *const label : {m_server, m_transaction, m_summary}) {
        label->setTextFormat(Qt::PlainText);
        label->setContentsMargins(8, 2, 8, 2);
    }
    addWidget(m_server, 1);
    addPermanentWidget(m_transaction);
    addPermanentWidget(m_summary);
    m_clock.setInterval(std::chrono::seconds(1));
    connect(&m_clock, &QTimer::timeout, this, &StatusLine::update);
    m_notifications = DXNotificationCenter::sharedInstance().observe(
        DXAlwaysVisibleUserNotification::undeliveredNotificationName(),
        [this](const DXNotificationCenter::Notification &notification) {
            announce(notification.userInfo[DXAlwaysVisibleUserNotification::textKey()].toString());
        });
}

void StatusLine::follow(DXQueryTab *tab, const QString &product)
{
    m_product = product;
    if (m_tab)
        disconnect(m_tab, nullptr, this, nullptr);
    m_tab = tab;
    if (tab)
        connect(tab, &DXQueryTab::statusChanged, this, &StatusLine::update);
    update();
}

void StatusLine::announce(const QString &text)
{
    showMessage(text, messageMilliseconds);
}

QString StatusLine::transactionText() const
{
    if (!m_tab)
        return {};
    const DXQuerySession &session = m_tab->session();
    const QString age = DXDurationText::clock(session.transactionAge());
    if (session.hasFailedTransaction())
        return tr("in failed transaction %1").arg(age);
    if (session.isInTransaction())
        return tr("in transaction %1").arg(age);
    return session.commitsManually() ? tr("manual commit") : QString();
}

void StatusLine::update()
{
    const bool isOpen = m_tab && m_tab->session().isInTransaction();
    m_server->setText(m_tab ? serverText(*m_tab, m_product) : QString());
    m_summary->setText(m_tab ? m_tab->summary() : QString());
    m_transaction->setText(transactionText());
    const bool hasFailed = m_tab && m_tab->session().hasFailedTransaction();
    QPalette colors = palette();
    const DXTheme &theme = DXTheme::of(colors);
    colors.setColor(QPalette::WindowText, hasFailed ? theme.danger : theme.warning);
    m_transaction->setPalette(colors);
    if (!isOpen)
        m_clock.stop();
    else if (!m_clock.isActive())
        m_clock.start();
}
