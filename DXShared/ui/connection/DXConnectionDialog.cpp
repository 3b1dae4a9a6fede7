// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXConnectionDialog.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/SQLRecentConnection.h"
#include "client/ssh/DXSSHTunnel.h"
#include "core/DXLogHelper.h"
#include "ui/DXMessageArea.h"
#include "ui/connection/DXConnectionForm.h"
#include "ui/connection/DXSSHPrompter.h"
#include "ui/connection/DXSavedConnectionsModel.h"
#include "ui/connection/DXSavedConnectionsView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace
{

constexpr int edge = 16;
constexpr int gap = 8;
constexpr int sidebarWidth = 260;
constexpr QSize firstSize(880, 600);
// What is over sooner needs no progress.
constexpr std::chrono::milliseconds patience(150);
constexpr int progressHeight = 4;

QString textOf(const DXError &error)
{
    QString text = error.description().trimmed();
    text.replace(u'\t', u' ');
    // What libpq cannot know, ssh does.
    const QString ssh = error.details().value(DXSSHTunnel::standardErrorKey()).toString().trimmed();
    return ssh.isEmpty() ? text : text + QStringLiteral("\n\nssh: ") + ssh;
}

QString serverOf(const SQLRecentConnection &record)
{
    return DXSavedConnectionsModel::secondaryTextOf(record);
}

} // namespace

DXConnectionDialog::DXConnectionDialog(const Init &init)
    : QDialog(init.parent)
    , m_list(init.list)
    , m_form(init.form)
    , m_notSaved(init.notSaved)
    , m_newRecord(init.newRecord)
{
    setWindowTitle(init.title);
    setWindowModality(init.parent ? Qt::WindowModal : Qt::NonModal);
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(createSidebar());
    layout->addWidget(createMain(), 1);
    resize(firstSize);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        m_progress->show();
        m_message->setMessage(DXMessageArea::Kind::Information,
                              tr("Connecting to %1…").arg(serverOf(*m_attempted)));
    });
    connect(m_form, &DXConnectionForm::edited, this, [this] { m_isEdited = true; });
    connectSidebar();
    setRecord(init.record);

    DXError error;
    if (!DXSSHPrompter::install(&error))
        DXLogHelper::sharedInstance().logError(error);
}

DXConnectionDialog::~DXConnectionDialog() = default;

QWidget *DXConnectionDialog::createSidebar()
{
    auto *const sidebar = new QWidget;
    sidebar->setFixedWidth(sidebarWidth);
    // The program's style sheet gives it its colour, as the main window's.
    sidebar->setObjectName(QStringLiteral("sidebar"));
    sidebar->setAttribute(Qt::WA_StyledBackground);
    m_saved = new DXSavedConnectionsView;
    auto *const layout = new QVBoxLayout(sidebar);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->addWidget(m_saved);
    return sidebar;
}

QWidget *DXConnectionDialog::createMain()
{
    auto *const scroller = new QScrollArea;
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidgetResizable(true);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setWidget(m_form);
    m_message = new DXMessageArea;
    m_progress = new QProgressBar;
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(progressHeight);
    m_progress->setAccessibleName(tr("Connecting"));
    QSizePolicy policy = m_progress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(policy);
    m_progress->hide();

    auto *const main = new QWidget;
    auto *const layout = new QVBoxLayout(main);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(gap);
    layout->addWidget(scroller, 1);
    layout->addWidget(m_message);
    layout->addWidget(m_progress);
    layout->addWidget(createButtons());
    return main;
}

QWidget *DXConnectionDialog::createButtons()
{
    m_test = new QPushButton(tr("T&est connection"));
    m_save = new QPushButton(tr("&Save"));
    m_cancel = new QPushButton(tr("Cancel"));
    m_connect = new QPushButton(tr("&Connect"));
    for (QPushButton *const button : {m_test, m_save, m_cancel})
        button->setAutoDefault(false);
    m_connect->setDefault(true);
    connect(m_test, &QPushButton::clicked, this, [this] { start(Purpose::Test); });
    connect(m_save, &QPushButton::clicked, this, &DXConnectionDialog::save);
    connect(m_cancel, &QPushButton::clicked, this, &DXConnectionDialog::reject);
    connect(m_connect, &QPushButton::clicked, this, &DXConnectionDialog::connectNow);

    auto *const buttons = new QWidget;
    auto *const layout = new QHBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    layout->addWidget(m_test);
    layout->addWidget(m_save);
    layout->addStretch(1);
    layout->addWidget(m_cancel);
    layout->addWidget(m_connect);
    return buttons;
}

void DXConnectionDialog::connectSidebar()
{
    using View = DXSavedConnectionsView;
    connect(m_saved, &View::currentChanged, this, [this](const Record &record) {
        if (record)
            setRecord(record);
    });
    connect(m_saved, &View::connectRequested, this, [this](const Record &record) {
        setRecord(record);
        connectNow();
    });
    connect(m_saved, &View::editRequested, this, [this](const Record &record) {
        setRecord(record);
        m_form->takeFocus();
    });
    connect(m_saved, &View::newRequested, this, [this] {
        setRecord(m_newRecord());
        m_form->takeFocus();
    });
    m_saved->setLists({&m_list});
}

QString DXConnectionDialog::shownId() const
{
    return m_shown->connectionId();
}

void DXConnectionDialog::setRecord(const Record &record)
{
    // What comes of it would be shown at the wrong one.
    if (m_attempt && m_attempted->connectionId() != record->connectionId())
        stop();
    if (m_shown && m_shown->connectionId() == record->connectionId() && m_isEdited) {
        m_saved->setCurrentId(record->connectionId());
        return;
    }
    if (m_isEdited)
        m_drafts.insert(m_shown->connectionId(), m_form->record());
    m_shown = record;
    const Record draft = m_drafts.take(record->connectionId());
    m_form->setRecord(draft ? *draft : *record);
    m_isEdited = draft != nullptr;
    m_message->clearMessage();
    m_saved->setCurrentId(record->connectionId());
}

void DXConnectionDialog::connectNow()
{
    start(Purpose::Connect);
}

void DXConnectionDialog::start(Purpose purpose)
{
    if (m_attempt)
        return;
    m_message->clearMessage();
    if (!m_form->validate())
        return;
    m_attempted = m_form->record();
    setRunning(true);
    m_attempt = std::make_unique<DXConnectionAttempt>(
        *m_attempted->createDatabaseConnectionDetails(),
        [this, purpose](const DXConnectionAttempt::Result &result) { finished(purpose, result); });
}

void DXConnectionDialog::setRunning(bool isRunning)
{
    for (QPushButton *const button : {m_test, m_save, m_connect})
        button->setEnabled(!isRunning);
    m_cancel->setText(isRunning ? tr("Stop") : tr("Cancel"));
    if (isRunning) {
        m_patience.start();
    } else {
        m_patience.stop();
        m_progress->hide();
    }
}

void DXConnectionDialog::finished(Purpose purpose, const DXConnectionAttempt::Result &result)
{
    m_attempt.reset();
    setRunning(false);
    if (!result.client) {
        showFailure(result);
    } else if (purpose == Purpose::Test) {
        showTest(result);
    } else {
        // Else whoever shows the connection would log in once more, with a code that was good once.
        DabroDatabaseConnectionPool::adopt(result.client);
        const Record record = m_attempted;
        m_list.updateRecentConnection(record, m_notSaved);
        const std::shared_ptr<DabroDBC> details = record->createDatabaseConnectionDetails();
        accept();
        Q_EMIT connected(details);
    }
}

void DXConnectionDialog::showTest(const DXConnectionAttempt::Result &result)
{
    m_message->setMessage(DXMessageArea::Kind::Success,
                          tr("Connected in %1 ms. Server version %2.\n%3")
                              .arg(result.duration.count())
                              .arg(result.serverVersion, result.summary));
}

void DXConnectionDialog::showFailure(const DXConnectionAttempt::Result &result)
{
    m_message->setMessage(DXMessageArea::Kind::Error, textOf(result.error));
    if (result.needsPassword)
        m_form->askForPassword(tr("The server asks for a password."));
    else
        m_form->showFailure(result.error);
}

void DXConnectionDialog::save()
{
    if (!m_form->validate())
        return;
    const Record record = m_form->record();
    m_isEdited = false;
    m_shown = record;
    m_list.updateRecentConnection(record, [dialog = QPointer(this), record](const DXError &error) {
        if (dialog)
            dialog->saved(DXSavedConnectionsModel::nameOf(*record), error);
    });
    m_saved->setCurrentId(record->connectionId());
}

void DXConnectionDialog::saved(const QString &name, const DXError &error)
{
    if (error)
        m_message->setMessage(DXMessageArea::Kind::Error,
                              tr("\"%1\" could not be saved: %2").arg(name, textOf(error)));
    else
        m_message->setMessage(DXMessageArea::Kind::Success, tr("\"%1\" is saved.").arg(name));
}

void DXConnectionDialog::reject()
{
    if (!m_attempt) {
        QDialog::reject();
        return;
    }
    stop();
    m_message->setMessage(DXMessageArea::Kind::Information, tr("Stopped."));
}

void DXConnectionDialog::stop()
{
    m_attempt.reset();
    setRunning(false);
}
