// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Disconnection.h"

#include "client/DabroDBC.h"
#include "desktop/Connections.h"
#include "desktop/documents/Documents.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QMessageBox>
#include <QPushButton>

Disconnection::Disconnection(const Init &init, QWidget &window)
    : QObject(&window)
    , m_init(init)
    , m_window(window)
{ }

QList<DXQueryTab *> Disconnection::tabsOf(const DabroDBC &details) const
{
    QList<DXQueryTab *> tabs = m_init.documents.all();
    tabs.removeIf([&details](const DXQueryTab *tab) {
        return !tab->hasConnection() || !Connections::isSameServer(*tab->details(), details);
    });
    return tabs;
}

QStringList Disconnection::losses(const DabroDBC &details) const
{
    QStringList lost;
    const QList<DXQueryTab *> tabs = tabsOf(details);
    for (const DXQueryTab *const tab : tabs) {
        if (tab->session().isInTransaction())
            lost += tr("A transaction is open in \"%1\".").arg(m_init.documents.title(*tab));
        else if (tab->session().isBusy())
            lost += tr("A statement is running in \"%1\".").arg(m_init.documents.title(*tab));
    }
    return lost;
}

void Disconnection::request(const std::shared_ptr<DabroDBC> &details)
{
    QStringList lost = losses(*details);
    if (lost.isEmpty()) {
        leave(*details);
        return;
    }
    constexpr qsizetype mostNamed = 5;
    if (const qsizetype more = lost.size() - mostNamed; more > 0) {
        lost.resize(mostNamed);
        lost += tr("And %n more.", nullptr, static_cast<int>(more));
    }
    auto *const question =
        new QMessageBox(QMessageBox::Warning, tr("Disconnect?"),
                        tr("Disconnecting from %1 rolls back what is not committed.")
                                .arg(Connections::title(*details))
                            + QStringLiteral("\n\n") + lost.join(u'\n'),
                        QMessageBox::Cancel, &m_window);
    question->setTextFormat(Qt::PlainText);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setDefaultButton(QMessageBox::Cancel);
    connect(question->addButton(tr("Roll back and disconnect"), QMessageBox::DestructiveRole),
            &QPushButton::clicked, this, [this, details] { leave(*details); });
    question->open();
}

void Disconnection::leave(const DabroDBC &details)
{
    const QList<DXQueryTab *> tabs = tabsOf(details);
    for (const DXQueryTab *const tab : tabs)
        tab->session().leave();
    m_init.connections.close(details, m_init.tree);
}
