// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/AboutBox.h"

#include <QApplication>
#include <QMessageBox>

void AboutBox::open(QWidget &window)
{
    const QString name = QApplication::applicationDisplayName();
    const QString text =
        QCoreApplication::translate(
            "AboutBox",
            "%1 %2\n\nA client for PostgreSQL. Free software under the GPL, version 3 or later.")
            .arg(name, QApplication::applicationVersion());
    auto *const box = new QMessageBox(QMessageBox::NoIcon, name, text, QMessageBox::Close, &window);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
