// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSSHPromptDialog.h"

#include "ui/DXDialogButtons.h"
#include "ui/DXLabels.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace
{

constexpr int edge = 16;
constexpr int rowGap = 8;
constexpr int narrowest = 480;

// What may be typed in a terminal; here there are buttons.
QString withoutAnswers(const QString &text)
{
    static const QRegularExpression answers(QStringLiteral("\\s*\\(yes/no[^)]*\\)"));
    return QString(text).remove(answers).trimmed();
}

// One-time codes are worth nothing a second time.
bool canBeAskedAgain(const QString &text)
{
    return text.contains(QLatin1String("passphrase"), Qt::CaseInsensitive)
           || text.contains(QLatin1String("password"), Qt::CaseInsensitive);
}

} // namespace

DXSSHPromptDialog::Kind DXSSHPromptDialog::kindOf(const QByteArray &hint, const QString &text)
{
    if (hint == "confirm")
        return Kind::Permission;
    if (hint == "none")
        return Kind::Notice;
    // What a server asks comes after "(user@host) ", and is not ssh's own question.
    const bool isServers = text.startsWith(u'(');
    return text.contains(QLatin1String("(yes/no")) && !isServers ? Kind::HostKey : Kind::Secret;
}

DXSSHPromptDialog::DXSSHPromptDialog(const QByteArray &hint, const QString &text, Attempt attempt,
                                     QWidget *parent)
    : QDialog(parent)
    , m_kind(kindOf(hint, text))
{
    setWindowTitle(tr("SSH tunnel"));
    setWindowModality(parent ? Qt::WindowModal : Qt::NonModal);
    setMinimumWidth(narrowest);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(rowGap);

    QLabel *const title = DXLabels::plain(heading(attempt));
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(title);
    QLabel *const question = DXLabels::plain(withoutAnswers(text));
    question->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    question->setFocusPolicy(Qt::ClickFocus);
    layout->addWidget(question);
    if (m_kind == Kind::Secret) {
        m_secret = new QLineEdit;
        m_secret->setEchoMode(QLineEdit::Password);
        m_secret->setAccessibleName(withoutAnswers(text));
        layout->addWidget(m_secret);
        m_remember = new QCheckBox(tr("&Keep it until the program ends"));
        m_remember->setChecked(canBeAskedAgain(text));
        m_remember->setVisible(canBeAskedAgain(text));
        layout->addWidget(m_remember);
        m_secret->setFocus();
    }
    layout->addSpacing(rowGap);
    auto *const buttons = new DXDialogButtons(*this, acceptText());
    layout->addWidget(buttons);
    // A host's key is not trusted by a Return that was meant for something else.
    buttons->makeDefault(m_kind == Kind::Secret ? DXDialogButtons::Default::Accept
                                                : DXDialogButtons::Default::Cancel);
}

QString DXSSHPromptDialog::heading(Attempt attempt) const
{
    switch (m_kind) {
    case Kind::Secret:
        return attempt == Attempt::First ? tr("SSH asks for a secret")
                                         : tr("That was not it: SSH asks again");
    case Kind::HostKey:
        return tr("SSH does not know this host");
    case Kind::Permission:
        return tr("SSH asks for permission");
    case Kind::Notice:
        return tr("SSH waits for you");
    }
    return {};
}

QString DXSSHPromptDialog::acceptText() const
{
    switch (m_kind) {
    case Kind::HostKey:
        return tr("&Trust this host");
    case Kind::Permission:
        return tr("&Allow");
    case Kind::Secret:
        return tr("C&ontinue");
    case Kind::Notice:
        break;
    }
    return {};
}

QString DXSSHPromptDialog::answer() const
{
    if (m_secret)
        return m_secret->text();
    return m_kind == Kind::HostKey ? QStringLiteral("yes") : QString();
}

bool DXSSHPromptDialog::isToBeRemembered() const
{
    return m_remember && m_remember->isChecked();
}
