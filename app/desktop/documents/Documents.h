// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXTextRecord.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTabWidget>

#include <functional>
#include <memory>

class DXQueryTab;
class DabroDBC;
class QToolButton;

/// A window's query tabs and the files that they hold. [main]
class Documents final : public QTabWidget
{
    Q_OBJECT

public:
    explicit Documents(QWidget *parent = nullptr);

    /// Null when none is open.
    DXQueryTab *current() const;
    QList<DXQueryTab *> all() const;

    /// How SQL is read in tabs without a connection; before the first of those.
    void setPlainDetails(const std::shared_ptr<DabroDBC> &details) { m_plainDetails = details; }
    /// Opens a tab after the others and goes there; without a connection when details are null.
    /// Null when no driver knows how to read SQL.
    DXQueryTab *add(const std::shared_ptr<DabroDBC> &details, const QString &text = {});
    /// A tab as a journal kept it.
    DXQueryTab *add(const DXTextRecord &record);
    /// The tab as a journal keeps it.
    DXTextRecord record(const DXQueryTab &tab) const;
    /// Closes the tab, after asking where a transaction is open or a file not saved; its text can
    /// be had back with reopen().
    void requestClose(DXQueryTab *tab);
    void close(DXQueryTab *tab);
    void reopen();
    bool canReopen() const { return !m_closed.isEmpty(); }
    void step(int tabs);

    QString title(const DXQueryTab &tab) const;
    /// The path of the tab's file; null for none.
    QString path(const DXQueryTab &tab) const;
    /// Reads the file into a tab of its own, or goes to the one that has it.
    void openFile(const QString &path, const std::shared_ptr<DabroDBC> &details);
    /// Writes the tab's text into its file; false when it has none yet.
    bool save(DXQueryTab &tab);
    void saveAs(DXQueryTab &tab, const QString &path);
    static QStringList recentFiles();

Q_SIGNALS:
    void currentTabChanged(DXQueryTab *tab);
    /// A tab was made, before it is shown.
    void added(DXQueryTab *tab);
    /// A tab is about to be destroyed.
    void removed(DXQueryTab *tab);
    /// What record() gives for the tab is another, save for its caret.
    void recordChanged(DXQueryTab *tab);
    void titleChanged();
    /// A tab reached its server, which it had not spoken to yet.
    void connected(DXQueryTab *tab);
    /// What could not be opened, for the user; about names it.
    void failed(const QString &about, const QString &headline, const QString &details);

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Document
    {
        // Names the tab in the journal.
        QString id = {};
        QString title = {};
        QString path = {};
        // What the file held when it was last read or written here.
        QByteArray content = {};
        bool hasByteOrderMark = false;
        // Where its statements go, and went when it was kept last.
        QString connectionId = {};
        QString database = {};
        bool commitsManually = false;
        bool hasConnected = false;
    };
    struct Answer
    {
        QString title;
        std::function<void()> given;
    };
    struct Closed
    {
        Document document;
        QString text;
        std::shared_ptr<DabroDBC> details;
    };

    DXQueryTab *insert(const Document &document, const std::shared_ptr<DabroDBC> &details,
                       const QString &text);
    QToolButton *createCloseButton(DXQueryTab *tab);
    void closeUnlessUnsaved(DXQueryTab *tab);
    void ask(DXQueryTab &tab, const QString &text, const QList<Answer> &answers);
    void updateTitle(DXQueryTab &tab);
    QString freeTitle() const;
    DXQueryTab *tabOf(const QString &path) const;
    void fileChanged(const QString &path);
    void checkTarget(DXQueryTab *tab);
    void compareWithFile(DXQueryTab &tab);
    void takeFromFile(DXQueryTab &tab);
    void watchAgain();
    void remember(const QString &path);

    QHash<const DXQueryTab *, Document> m_documents;
    QList<Closed> m_closed;
    QFileSystemWatcher m_watcher;
    std::shared_ptr<DabroDBC> m_plainDetails;
};
