// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXFormField.h"

#include "ui/DXTheme.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

DXFormField::DXFormField(QWidget *editor, QWidget *parent)
    : QWidget(parent)
    , m_editor(editor)
    , m_message(new QLabel)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(editor);
    layout->addWidget(m_message);
    setFocusProxy(editor);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    m_message->hide();
}

void DXFormField::setHint(const QString &hint)
{
    m_hint = hint;
    show();
}

void DXFormField::setProblem(const QString &problem)
{
    m_problemText = problem;
    // Where the keyboard goes, so that it is read there.
    QWidget *const proxy = m_editor->focusProxy();
    (proxy ? proxy : m_editor)->setAccessibleDescription(problem);
    show();
}

void DXFormField::show()
{
    const DXTheme &theme = DXTheme::of(palette());
    QPalette colors = m_message->palette();
    colors.setColor(QPalette::WindowText,
                    m_problemText.isEmpty() ? theme.secondaryText : theme.danger);
    m_message->setPalette(colors);
    m_message->setText(m_problemText.isEmpty() ? m_hint : m_problemText);
    m_message->setVisible(!m_message->text().isEmpty());
}

void DXFormField::takeFocus()
{
    m_editor->setFocus(Qt::OtherFocusReason);
    if (auto *const line = qobject_cast<QLineEdit *>(m_editor))
        line->selectAll();
}
