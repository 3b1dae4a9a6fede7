// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/QuitQuestion.h"

#include "core/DXError.h"
#include "desktop/TableExports.h"
#include "desktop/documents/DocumentJournal.h"
#include "desktop/documents/Documents.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"

#include <QMessageBox>
#include <QPushButton>

QuitQuestion::QuitQuestion(const Init &init, QWidget &window)
    : QObject(&window)
    , m_init(init)
    , m_window(window)
{ }

bool QuitQuestion::mayClose()
{
    const QStringList lost = losses();
    if (m_isAgreed || lost.isEmpty())
        return true;
    ask(lost);
    return false;
}

QStringList QuitQuestion::losses()
{
    QStringList lost;
    const QList<DXQueryTab *> tabs = m_init.documents.all();
    for (const DXQueryTab *const tab : tabs) {
        if (tab->session().isInTransaction())
            lost += tr("A transaction is open in \"%1\". Quitting rolls it back.")
                        .arg(m_init.documents.title(*tab));
        else if (tab->session().isBusy())
            lost += tr("A statement is running in \"%1\". Quitting cancels it.")
                        .arg(m_init.documents.title(*tab));
    }
    for (const QString &table : m_init.exports.tables())
        lost += tr("%1 is being exported. Quitting cancels that.").arg(table);
    DXError error;
    if (!m_init.journal.flush(&error))
        lost += tr("What was typed is lost, since it cannot be kept on disk: %1.")
                    .arg(error.description().trimmed());
    return lost;
}

void QuitQuestion::ask(const QStringList &losses)
{
    constexpr qsizetype mostNamed = 5;
    QStringList named = losses.mid(0, mostNamed);
    if (losses.size() > mostNamed)
        named += tr("And %n more.", nullptr, static_cast<int>(losses.size() - mostNamed));
    auto *const question = new QMessageBox(QMessageBox::Warning, tr("Quit?"), named.join(u'\n'),
                                           QMessageBox::Cancel, &m_window);
    question->setTextFormat(Qt::PlainText);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setDefaultButton(QMessageBox::Cancel);
    connect(question->addButton(tr("Quit anyway"), QMessageBox::DestructiveRole),
            &QPushButton::clicked, this, [this] {
                m_isAgreed = true;
                m_window.close();
            });
    question->open();
}
