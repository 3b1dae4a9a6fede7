// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Documents.h"

#include "client/DabroDBC.h"
#include "desktop/TextFile.h"
#include "dispatch/DXDispatch.h"
#include "ui/DXFailureList.h"
#include "ui/DXIcon.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"

#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <QUuid>

#include <chrono>

namespace
{

constexpr int mostClosed = 20;
constexpr int mostRecent = 10;
const QLatin1String recentKey("recentFiles");
// What a tab's failures say about its file.
const QLatin1String fileKey("file");
constexpr std::chrono::milliseconds settles{200};
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
    return insert({.title = tr("Query %1").arg(++m_lastNumber)}, details, text);
}

DXQueryTab *Documents::add(const DXTextRecord &record)
{
    Document document{.id = record.id, .title = record.title, .path = record.filePath};
    // What was in the file then may no longer be; the text is compared with what is there now.
    if (!record.filePath.isNull())
        document.content = TextFile::read(record.filePath).bytes;
    ++m_lastNumber;
    DXQueryTab *const tab = insert(document, nullptr, record.text);
    if (!tab)
        return nullptr;
    tab->editor().setCaretPosition(record.caret);
    if (!record.filePath.isNull())
        m_watcher.addPath(record.filePath);
    return tab;
}

DXTextRecord Documents::record(const DXQueryTab &tab) const
{
    const Document document = m_documents.value(&tab);
    return {.id = document.id,
            .title = document.title,
            .filePath = document.path,
            .connectionId = tab.details()->connectionId(),
            .text = tab.editor().text(),
            .caret = tab.editor().caretPosition(),
            .isModified = tab.editor().isModified(),
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
    tab->editor().setText(text);
    tab->editor().setModified(document.path.isNull() ? false : text.toUtf8() != document.content);
    connect(&tab->editor(), &QsciScintilla::modificationChanged, this,
            [this, tab] { updateTitle(*tab); });
    connect(&tab->editor(), &QsciScintilla::textChanged, this,
            [this, tab] { Q_EMIT textChanged(tab); });
    Q_EMIT added(tab);
    const int index = addTab(tab, QString());
    tabBar()->setTabButton(index, QTabBar::RightSide, createCloseButton(tab));
    setCurrentIndex(index);
    updateTitle(*tab);
    tab->editor().setFocus();
    if (!text.isEmpty())
        Q_EMIT textChanged(tab);
    return tab;
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
    setTabToolTip(indexOf(&tab), document.path);
    Q_EMIT titleChanged();
}

void Documents::requestClose(DXQueryTab *tab)
{
    const auto closeLater = [this, tab = QPointer(tab)] {
        // Not from within the question, which the tab takes with it.
        DXDispatch::main([this, tab] { close(tab); });
    };
    if (tab && tab->session().isInTransaction()) {
        ask(*tab, tr("A transaction is open in \"%1\". Closing the tab rolls it back."),
            {{tr("Roll back and close"), closeLater}});
    } else if (tab && tab->editor().isModified() && !m_documents[tab].path.isNull()) {
        const auto saveAndClose = [this, tab, closeLater] {
            save(*tab);
            if (!tab->editor().isModified())
                closeLater();
        };
        ask(*tab, tr("What was changed in \"%1\" is not in its file yet."),
            {{tr("Discard"), closeLater}, {tr("Save"), saveAndClose}});
    } else {
        close(tab);
    }
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
    insert(closed.document, closed.details, closed.text);
    if (!closed.document.path.isNull())
        m_watcher.addPath(closed.document.path);
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

void Documents::openFile(const QString &path, const std::shared_ptr<DabroDBC> &details)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    for (DXQueryTab *const tab : all()) {
        if (m_documents[tab].path == absolute) {
            setCurrentWidget(tab);
            return;
        }
    }
    const TextFile content = TextFile::read(absolute);
    if (!content.failure.isNull()) {
        Q_EMIT failed(absolute, tr("Could not open %1: %2.").arg(path, content.failure), {});
        return;
    }
    insert({.title = QFileInfo(absolute).fileName(), .path = absolute, .content = content.bytes},
           details, content.text);
    m_watcher.addPath(absolute);
    remember(absolute);
}

bool Documents::save(DXQueryTab &tab)
{
    const QString path = m_documents[&tab].path;
    if (!path.isNull())
        saveAs(tab, path);
    return !path.isNull();
}

void Documents::saveAs(DXQueryTab &tab, const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const QByteArray bytes = tab.editor().text().toUtf8();
    Document &document = m_documents[&tab];
    if (!document.path.isNull())
        m_watcher.removePath(document.path);
    const QString failure = TextFile::write(absolute, bytes);
    if (failure.isNull()) {
        document = {document.id, QFileInfo(absolute).fileName(), absolute, bytes};
        tab.editor().setModified(false);
        tab.failures().settle(fileKey);
        updateTitle(tab);
        remember(absolute);
    } else {
        tab.failures().showFailure(
            fileKey, tr("Could not save %1: %2. The text is still in its tab; save it elsewhere.")
                         .arg(absolute, failure));
    }
    if (!document.path.isNull())
        m_watcher.addPath(document.path);
}

void Documents::fileChanged(const QString &path)
{
    // Programs that replace a file let it be gone for a moment, and end its watch.
    QTimer::singleShot(settles, this, [this, path] {
        for (DXQueryTab *const tab : all()) {
            if (m_documents[tab].path == path)
                compareWithFile(*tab);
        }
        watchAgain();
    });
}

// Files that were gone, or whose watch ended, are looked at again.
void Documents::watchAgain()
{
    for (DXQueryTab *const tab : all()) {
        const QString path = m_documents[tab].path;
        if (!path.isNull() && !m_watcher.files().contains(path) && m_watcher.addPath(path))
            compareWithFile(*tab);
    }
}

// Another program's changes are taken over where nothing is lost by it.
void Documents::compareWithFile(DXQueryTab &tab)
{
    Document &document = m_documents[&tab];
    const TextFile content = TextFile::read(document.path);
    if (!content.failure.isNull()) {
        tab.editor().setModified(true);
        tab.failures().showNote(fileKey,
                                tr("%1 cannot be read any more: %2. The text is still in its tab, "
                                   "and saving it writes the file anew.")
                                    .arg(document.path, content.failure));
        return;
    }
    tab.failures().settle(fileKey);
    if (content.bytes == document.content)
        return;
    document.content = content.bytes;
    if (!tab.editor().isModified()) {
        tab.editor().setText(content.text);
        tab.editor().setModified(false);
        return;
    }
    tab.failures().showNote(fileKey,
                            tr("%1 was changed by another program. Saving replaces that; save "
                               "under another name to keep both.")
                                .arg(document.path),
                            {{tr("Load the file"), [this, &tab] { takeFromFile(tab); }}});
}

void Documents::takeFromFile(DXQueryTab &tab)
{
    const TextFile content = TextFile::read(m_documents[&tab].path);
    if (!content.failure.isNull()) {
        compareWithFile(tab);
        return;
    }
    m_documents[&tab].content = content.bytes;
    // As an edit, so that what was typed is an undo away.
    tab.editor().selectAll();
    tab.editor().insertText(content.text);
    tab.editor().setModified(false);
}

QStringList Documents::recentFiles()
{
    return QSettings().value(recentKey).toStringList();
}

void Documents::remember(const QString &path)
{
    QStringList files = recentFiles();
    files.removeAll(path);
    files.prepend(path);
    QSettings().setValue(recentKey, files.mid(0, mostRecent));
}
