// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXDialogButtons.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>

DXDialogButtons::DXDialogButtons(QDialog &dialog, const QString &acceptText)
    : m_cancel(new QPushButton(tr("Cancel")))
    , m_accept(new QPushButton(acceptText))
{
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addStretch(1);
    layout->addWidget(m_cancel);
    layout->addWidget(m_accept);
    m_accept->setVisible(!acceptText.isEmpty());
    for (QPushButton *const button : {m_cancel, m_accept})
        button->setAutoDefault(false);
    connect(m_cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    connect(m_accept, &QPushButton::clicked, &dialog, &QDialog::accept);
}

void DXDialogButtons::makeDefault(Default which)
{
    (which == Default::Accept ? m_accept : m_cancel)->setDefault(true);
}
