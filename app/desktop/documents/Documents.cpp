// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/Documents.h"

#include "client/DabroDBC.h"
#include "desktop/documents/TextFile.h"
#include "dispatch/DXDispatch.h"
#include "ui/DXIcon.h"
#include "ui/DXToolTip.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"

#include <QCryptographicHash>
#include <QEvent>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QToolButton>
#include <QUuid>

#include <algorithm>

namespace
{

constexpr int mostClosed = 20;

QByteArray digest(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

} // namespace

Documents::Documents(QWidget *parent)
    : QTabWidget(parent)
{
    setDocumentMode(true);
    setMovable(true);
    setElideMode(Qt::ElideMiddle);
    setAccessibleName(tr("Queries"));
    connect(this, &QTabWidget::currentChanged, this,
            [this] { Q_EMIT currentTabChanged(current()); });
    connect(tabBar(), &QTabBar::tabMoved, this, [this](int from, int to) {
        for (const int index : {from, to})
            Q_EMIT recordChanged(qobject_cast<DXQueryTab *>(widget(index)));
    });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &Documents::fileChanged);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &Documents::watchAgain);
}

DXQueryTab *Documents::current() const
{
    return qobject_cast<DXQueryTab *>(currentWidget());
}

QList<DXQueryTab *> Documents::all() const
{
    QList<DXQueryTab *> tabs;
    for (int index = 0; index < count(); ++index)
        tabs.append(qobject_cast<DXQueryTab *>(widget(index)));
    return tabs;
}

DXQueryTab *Documents::add(const std::shared_ptr<DabroDBC> &details, const QString &text)
{
    return insert({.title = freeTitle()}, details, text);
}

QString Documents::freeTitle() const
{
    QStringList taken;
    for (const Document &document : m_documents)
        taken.append(document.title);
    int number = 1;
    while (taken.contains(tr("Query %1").arg(number)))
        ++number;
    return tr("Query %1").arg(number);
}

DXQueryTab *Documents::add(const DXTextRecord &record)
{
    // One that was opened while the journal was read may have its title.
    const bool isTaken = record.filePath.isNull()
                         && std::ranges::any_of(m_documents, [&record](const Document &other) {
                                return other.title == record.title;
                            });
    Document document{.id = record.id,
                      .title = isTaken ? freeTitle() : record.title,
                      .path = record.filePath,
                      .connectionId = record.connectionId,
                      .database = record.database,
                      .commitsManually = record.commitsManually};
    if (!record.filePath.isNull() && record.isModified) {
        const TextFile file = TextFile::read(record.filePath);
        if (digest(file.bytes) == record.fileDigest)
            document.content = file.bytes;
    } else if (!record.filePath.isNull()) {
        document.content = record.text.toUtf8();
    }
    DXQueryTab *const tab = insert(document, nullptr, record.text);
    if (!tab)
        return nullptr;
    tab->editor().setCaretPosition(record.caret);
    // Another program may have changed it meanwhile.
    if (!record.filePath.isNull()) {
        m_watcher.addPath(record.filePath);
        compareWithFile(*tab);
    }
    return tab;
}

DXTextRecord Documents::record(const DXQueryTab &tab) const
{
    const Document document = m_documents.value(&tab);
    return {.id = document.id,
            .title = document.title,
            .filePath = document.path,
            .connectionId = document.connectionId,
            .database = document.database,
            .commitsManually = document.commitsManually,
            .text = tab.editor().text(),
            .caret = tab.editor().caretPosition(),
            .isModified = tab.editor().isModified(),
            .fileDigest = document.path.isNull() ? QByteArray() : digest(document.content),
            .order = indexOf(&tab)};
}

DXQueryTab *Documents::insert(const Document &document, const std::shared_ptr<DabroDBC> &details,
                              const QString &text)
{
    if (!details && !m_plainDetails)
        return nullptr;
    auto *const tab = new DXQueryTab({.details = details ? details : m_plainDetails->copy(),
                                      .hasConnection = details != nullptr});
    Document &kept = *m_documents.insert(tab, document);
    if (kept.id.isNull())
        kept.id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    tab->session().setCommitsManually(document.commitsManually);
    tab->editor().setText(text);
    tab->editor().setModified(document.path.isNull() ? false : text.toUtf8() != document.content);
    connect(&tab->editor(), &QsciScintilla::modificationChanged, this,
            [this, tab] { updateTitle(*tab); });
    connect(&tab->editor(), &QsciScintilla::textChanged, this,
            [this, tab] { Q_EMIT recordChanged(tab); });
    connect(tab, &DXQueryTab::statusChanged, this, [this, tab] { checkTarget(tab); });
    checkTarget(tab);
    Q_EMIT added(tab);
    const int index = addTab(tab, QString());
    tabBar()->setTabButton(index, QTabBar::RightSide, createCloseButton(tab));
    setCurrentIndex(index);
    updateTitle(*tab);
    tab->editor().setFocus();
    if (!text.isEmpty())
        Q_EMIT recordChanged(tab);
    return tab;
}

void Documents::checkTarget(DXQueryTab *tab)
{
    Document &document = m_documents[tab];
    const Document before = document;
    // One that came back may have its connection later.
    if (tab->hasConnection()) {
        document.connectionId = tab->details()->connectionId();
        document.database = tab->details()->database();
    }
    document.commitsManually = tab->session().commitsManually();
    document.hasConnected = !tab->session().serverVersion().isNull();
    if (document.hasConnected && !before.hasConnected)
        Q_EMIT connected(tab);
    // An empty tab is nothing to bring back, and the status changes many times a second while a
    // statement runs.
    if (tab->editor().length() == 0 && document.path.isNull())
        return;
    if (document.connectionId != before.connectionId || document.database != before.database
        || document.commitsManually != before.commitsManually)
        Q_EMIT recordChanged(tab);
}

QToolButton *Documents::createCloseButton(DXQueryTab *tab)
{
    auto *const button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(DXIcon::named(QStringLiteral("Action-Close"), palette()));
    button->setIconSize(QSize(12, 12));
    button->setToolTip(tr("Close tab"));
    button->setAccessibleName(tr("Close tab"));
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QToolButton::clicked, this, [this, tab] {
        // The button goes with its tab, so not from within its click.
        DXDispatch::main([this, tab = QPointer(tab)] { requestClose(tab); });
    });
    return button;
}

void Documents::changeEvent(QEvent *event)
{
    QTabWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    for (auto *const button : tabBar()->findChildren<QToolButton *>())
        if (!button->toolTip().isEmpty())
            button->setIcon(DXIcon::named(QStringLiteral("Action-Close"), palette()));
}

void Documents::updateTitle(DXQueryTab &tab)
{
    const Document &document = m_documents[&tab];
    const QString mark =
        tab.editor().isModified() && !document.path.isNull() ? QStringLiteral(" ●") : QString();
    // An ampersand would make a mnemonic of what follows it.
    setTabText(indexOf(&tab), QString(document.title).replace(u'&', QStringLiteral("&&")) + mark);
    setTabToolTip(indexOf(&tab), DXToolTip::plain(document.path));
    Q_EMIT titleChanged();
}

void Documents::requestClose(DXQueryTab *tab)
{
    if (tab && tab->session().isInTransaction())
        ask(*tab, tr("A transaction is open in \"%1\". Closing the tab rolls it back."),
            {{tr("Roll back and close"), [this, tab = QPointer(tab)] {
                  DXDispatch::main([this, tab] { closeUnlessUnsaved(tab); });
              }}});
    else
        closeUnlessUnsaved(tab);
}

void Documents::closeUnlessUnsaved(DXQueryTab *tab)
{
    if (!tab || !tab->editor().isModified() || m_documents[tab].path.isNull()) {
        close(tab);
        return;
    }
    const auto closeLater = [this, tab = QPointer(tab)] {
        // Not from within the question, which the tab takes with it.
        DXDispatch::main([this, tab] { close(tab); });
    };
    const auto saveAndClose = [this, tab, closeLater] {
        save(*tab);
        if (!tab->editor().isModified())
            closeLater();
    };
    ask(*tab, tr("What was changed in \"%1\" is not in its file yet."),
        {{tr("Discard"), closeLater}, {tr("Save"), saveAndClose}});
}

void Documents::ask(DXQueryTab &tab, const QString &text, const QList<Answer> &answers)
{
    auto *const question =
        new QMessageBox(QMessageBox::Warning, tr("Close?"), text.arg(m_documents[&tab].title),
                        QMessageBox::Cancel, &tab);
    question->setTextFormat(Qt::PlainText);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setDefaultButton(QMessageBox::Cancel);
    for (const Answer &answer : answers)
        connect(question->addButton(answer.title, QMessageBox::AcceptRole), &QPushButton::clicked,
                this, answer.given);
    question->open();
}

void Documents::close(DXQueryTab *tab)
{
    if (!tab)
        return;
    Q_EMIT removed(tab);
    const Document document = m_documents.take(tab);
    m_closed.append(
        {document, tab->editor().text(), tab->hasConnection() ? tab->details() : nullptr});
    if (m_closed.size() > mostClosed)
        m_closed.removeFirst();
    if (!document.path.isNull())
        m_watcher.removePath(document.path);
    removeTab(indexOf(tab));
    delete tab;
}

void Documents::reopen()
{
    if (m_closed.isEmpty())
        return;
    const Closed closed = m_closed.takeLast();
    const QString path = closed.document.path;
    if (DXQueryTab *const open = path.isNull() ? nullptr : tabOf(path)) {
        setCurrentWidget(open);
        return;
    }
    DXQueryTab *const tab = insert(closed.document, closed.details, closed.text);
    if (!path.isNull()) {
        m_watcher.addPath(path);
        compareWithFile(*tab);
    }
}

void Documents::step(int tabs)
{
    if (count() > 0)
        setCurrentIndex((currentIndex() + tabs + count()) % count());
}

QString Documents::title(const DXQueryTab &tab) const
{
    return m_documents.value(&tab).title;
}

QString Documents::path(const DXQueryTab &tab) const
{
    return m_documents.value(&tab).path;
}
