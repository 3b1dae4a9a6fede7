// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresSSLSheet.h"

#include "client/secrets/DXSecurityBookmarkHelper.h"
#include "ui/DXDialogButtons.h"
#include "ui/DXFileField.h"
#include "ui/DXFormField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int edge = 16;
constexpr int rowGap = 8;
constexpr int groupGap = 16;
constexpr int narrowest = 560;
constexpr QLatin1String defaultMode("prefer");

QString pathOf(const QString &token)
{
    return DXSecurityBookmarkHelper::sharedInstance().loadSecurePath(token).toLocalFile();
}

QString tokenOf(const DXFileField *file)
{
    return DXSecurityBookmarkHelper::sharedInstance().createSecurePath(file->path());
}

} // namespace

PostgresSSLSheet::PostgresSSLSheet(const std::shared_ptr<const PostgresSSLDetails> &details,
                                   QWidget *parent)
    : QDialog(parent)
    , m_mode(new QComboBox)
    , m_modeField(new DXFormField(m_mode))
    , m_compression(new QCheckBox(tr("Ask for co&mpression")))
{
    setWindowTitle(tr("SSL"));
    setWindowModality(Qt::WindowModal);
    setMinimumWidth(narrowest);
    const PostgresSSLDetails shown = details ? *details : PostgresSSLDetails();
    fillModes(details ? shown.sslMode() : QString(defaultMode));
    m_compression->setChecked(shown.sslCompression());
    m_compression->setToolTip(tr("Most servers refuse it."));

    auto *const form = new QFormLayout;
    form->setSpacing(rowGap);
    auto *const modeLabel = new QLabel(tr("&Encryption:"));
    modeLabel->setBuddy(m_mode);
    form->addRow(modeLabel, m_modeField);
    m_certificate = addFile(*form, tr("Client &certificate:"), tr("Client certificate"),
                            shown.clientCertificate(), tr("~/.postgresql/postgresql.crt"));
    m_key = addFile(*form, tr("Client &key:"), tr("Client key"), shown.clientKeyFile(),
                    tr("~/.postgresql/postgresql.key"));
    m_rootCertificate =
        addFile(*form, tr("&Root certificate:"), tr("Root certificate of the server"),
                shown.serverRootCertificate(), tr("~/.postgresql/root.crt"));
    m_revocationList = addFile(*form, tr("Revocation &list:"), tr("Certificate revocation list"),
                               shown.serverRevocationList(), QString());
    form->addRow(QString(), m_compression);

    auto *const buttons = new DXDialogButtons(*this, tr("&Apply"));
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(groupGap);
    layout->addLayout(form);
    layout->addStretch(1);
    layout->addWidget(buttons);
    buttons->makeDefault(DXDialogButtons::Default::Accept);
    connect(m_mode, &QComboBox::currentIndexChanged, this, &PostgresSSLSheet::showMode);
    showMode();
    m_mode->setFocus();
}

void PostgresSSLSheet::fillModes(const QString &mode)
{
    const std::array<QString, 6> texts{tr("Never"),
                                       tr("Only if the server insists"),
                                       tr("If the server can"),
                                       tr("Always, without checking the server"),
                                       tr("Always, the certificate is checked"),
                                       tr("Always, certificate and host name are checked")};
    m_mode->setAccessibleName(tr("Encryption"));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const QString &keyword = PostgresSSLDetails::modes().at(i);
        m_mode->addItem(QStringLiteral("%1 (%2)").arg(texts.at(i), keyword), keyword);
    }
    // What a newer version stored is not lost.
    if (m_mode->findData(mode) < 0)
        m_mode->addItem(mode, mode);
    m_mode->setCurrentIndex(m_mode->findData(mode));
}

PostgresSSLSheet::File PostgresSSLSheet::addFile(QFormLayout &form, const QString &label,
                                                 const QString &name, const QString &token,
                                                 const QString &placeholder)
{
    auto *const file = new DXFileField(name);
    file->setPath(pathOf(token));
    file->setPlaceholderText(placeholder);
    auto *const field = new DXFormField(file);
    connect(file, &DXFileField::edited, field, [field] { field->setProblem({}); });
    auto *const text = new QLabel(label);
    text->setBuddy(file);
    form.addRow(text, field);
    return {.file = file, .field = field};
}

void PostgresSSLSheet::showMode()
{
    const bool isUsed = m_mode->currentData().toString() != QLatin1String("disable");
    for (const File &file : {m_certificate, m_key, m_rootCertificate, m_revocationList})
        file.file->setEnabled(isUsed);
    m_compression->setEnabled(isUsed);
    m_rootCertificate.field->setHint(
        m_mode->currentData().toString().startsWith(QLatin1String("verify"))
            ? tr("The server's certificate must be signed by this one.")
            : QString());
}

std::shared_ptr<PostgresSSLDetails> PostgresSSLSheet::details() const
{
    auto details = std::make_shared<PostgresSSLDetails>();
    details->setSslMode(PostgresSSLDetails::canonicalMode(m_mode->currentData().toString()));
    details->setClientKeyFile(tokenOf(m_key.file));
    details->setClientCertificate(tokenOf(m_certificate.file));
    details->setServerRootCertificate(tokenOf(m_rootCertificate.file));
    details->setServerRevocationList(tokenOf(m_revocationList.file));
    details->setSslCompression(m_compression->isChecked());
    PostgresSSLDetails nothing;
    nothing.setSslMode(PostgresSSLDetails::canonicalMode(defaultMode));
    return details->isEqual(nothing) ? nullptr : details;
}

void PostgresSSLSheet::accept()
{
    const std::array files{m_certificate, m_key, m_rootCertificate, m_revocationList};
    for (const File &file : files) {
        const QString path = file.file->path();
        file.field->setProblem(file.file->isEnabled() && !path.isEmpty()
                                       && !QFileInfo(path).isFile()
                                   ? tr("There is no file \"%1\".").arg(path)
                                   : QString());
    }
    if (!m_key.file->path().isEmpty() && m_certificate.file->path().isEmpty())
        m_certificate.field->setProblem(tr("A client key is used only together with its "
                                           "certificate."));
    if (!m_revocationList.file->path().isEmpty() && m_rootCertificate.file->path().isEmpty())
        m_rootCertificate.field->setProblem(tr("A revocation list is used only together with a "
                                               "root certificate."));
    for (const File &file : files) {
        if (!file.field->problem().isEmpty()) {
            file.field->takeFocus();
            return;
        }
    }
    QDialog::accept();
}
