// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXFailureList.h"

#include "ui/DXFailureView.h"

#include <QApplication>
#include <QVBoxLayout>

#include <algorithm>

namespace
{
// Where much fails at once, the work below must still be seen.
constexpr int mostShown = 3;
} // namespace

DXFailureList::DXFailureList(QWidget *parent)
    : QWidget(parent)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    hide();
}

void DXFailureList::showFailure(const QString &about, const QString &headline,
                                const QString &details, const QList<Remedy> &remedies)
{
    add(about, remedies).showFailure(headline, details);
    showNewest();
}

void DXFailureList::showNote(const QString &about, const QString &headline,
                             const QList<Remedy> &remedies)
{
    add(about, remedies).showNote(headline);
    showNewest();
}

void DXFailureList::settle(const QString &about)
{
    const auto entry = std::ranges::find(m_entries, about, &Entry::about);
    if (entry != m_entries.end())
        remove(entry->view);
}

QStringList DXFailureList::headlines() const
{
    QStringList headlines;
    for (const Entry &entry : m_entries)
        headlines.append(entry.view->headline());
    return headlines;
}

void DXFailureList::focusNewest()
{
    if (isEmpty())
        return;
    if (QWidget *const focused = QApplication::focusWidget(); !isAncestorOf(focused))
        m_before = focused;
    m_entries.constFirst().view->focusButtons();
}

DXFailureView &DXFailureList::add(const QString &about, const QList<Remedy> &remedies)
{
    settle(about);
    auto *const view = new DXFailureView(DXFailureView::Place::Window);
    for (auto remedy = remedies.crbegin(); remedy != remedies.crend(); ++remedy)
        view->addRemedy(remedy->title, [this, about, apply = remedy->apply] {
            settle(about);
            apply();
        });
    connect(view, &DXFailureView::closeRequested, this, [this, view] { remove(view); });
    m_entries.prepend({about, view});
    static_cast<QVBoxLayout *>(layout())->insertWidget(0, view);
    return *view;
}

void DXFailureList::remove(const DXFailureView *view)
{
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    const auto entry = std::ranges::find(m_entries, view, &Entry::view);
    // Its own button may be what asks for this.
    entry->view->hide();
    entry->view->deleteLater();
    m_entries.erase(entry);
    showNewest();
    if (hadFocus && m_before)
        m_before->setFocus(Qt::OtherFocusReason);
}

void DXFailureList::showNewest()
{
    for (qsizetype index = 0; index < m_entries.size(); ++index)
        m_entries[index].view->setVisible(index < mostShown);
    setVisible(!isEmpty());
}
