// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXFileField.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

DXFileField::DXFileField(const QString &name, QWidget *parent)
    : QWidget(parent)
    , m_name(name)
    , m_line(new QLineEdit)
{
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_line, 1);
    auto *const button = new QPushButton(tr("Choose…"));
    button->setAutoDefault(false);
    button->setAccessibleName(tr("Choose the file: %1").arg(name));
    layout->addWidget(button);
    m_line->setAccessibleName(name);
    setFocusProxy(m_line);
    connect(button, &QPushButton::clicked, this, &DXFileField::choose);
    connect(m_line, &QLineEdit::textEdited, this, &DXFileField::edited);
}

QString DXFileField::path() const
{
    const QString text = m_line->text().trimmed();
    return text.startsWith(QLatin1String("~/")) ? QDir::homePath() + text.mid(1) : text;
}

void DXFileField::setPath(const QString &path)
{
    m_line->setText(path);
}

void DXFileField::setPlaceholderText(const QString &text)
{
    m_line->setPlaceholderText(text);
}

void DXFileField::choose()
{
    const QString start = path().isEmpty() ? QDir::homePath() : QFileInfo(path()).absolutePath();
    auto *const dialog = new QFileDialog(this, m_name, start);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    // Keys and certificates live in folders such as ~/.ssh and ~/.postgresql.
    dialog->setFilter(dialog->filter() | QDir::Hidden);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &file) {
        setPath(file);
        Q_EMIT edited();
    });
    dialog->open();
}
