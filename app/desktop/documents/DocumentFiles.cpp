// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/Documents.h"
#include "desktop/documents/TextFile.h"
#include "ui/DXFailureList.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryTab.h"

#include <QFileInfo>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace
{

constexpr int mostRecent = 10;
const QLatin1String recentKey("recentFiles");
// What a tab's failures say about its file.
const QLatin1String fileKey("file");
constexpr std::chrono::milliseconds settles{200};

} // namespace

DXQueryTab *Documents::tabOf(const QString &path) const
{
    const QList<DXQueryTab *> tabs = all();
    const auto found = std::ranges::find_if(
        tabs, [this, &path](const DXQueryTab *tab) { return this->path(*tab) == path; });
    return found == tabs.cend() ? nullptr : *found;
}

void Documents::openFile(const QString &path, const std::shared_ptr<DabroDBC> &details)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (DXQueryTab *const open = tabOf(absolute)) {
        setCurrentWidget(open);
        return;
    }
    const TextFile content = TextFile::read(absolute);
    if (!content.failure.isNull()) {
        Q_EMIT failed(absolute, tr("Could not open %1: %2.").arg(path, content.failure), {});
        return;
    }
    insert({.title = QFileInfo(absolute).fileName(),
            .path = absolute,
            .content = content.bytes,
            .hasByteOrderMark = content.hasByteOrderMark},
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
    Document &document = m_documents[&tab];
    if (const DXQueryTab *const other = tabOf(absolute); other && other != &tab) {
        tab.failures().showFailure(
            fileKey,
            tr("%1 is open in another tab. Close that, or save under another name.").arg(absolute));
        return;
    }
    const TextFile file{.bytes = tab.editor().text().toUtf8(),
                        .hasByteOrderMark = document.hasByteOrderMark};
    if (!document.path.isNull())
        m_watcher.removePath(document.path);
    const QString failure = file.write(absolute);
    if (failure.isNull()) {
        document.title = QFileInfo(absolute).fileName();
        document.path = absolute;
        document.content = file.bytes;
        tab.editor().setModified(false);
        tab.failures().settle(fileKey);
        updateTitle(tab);
        remember(absolute);
        Q_EMIT recordChanged(&tab);
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
    document.hasByteOrderMark = content.hasByteOrderMark;
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
