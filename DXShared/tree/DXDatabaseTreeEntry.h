// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "tree/DXMenu.h"

#include <QList>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

class DXDatabaseTreeContextHelper;
class DXDatabaseTreeEntry;
class DXQueryLoader;
class DabroDBC;
struct ColumnDetailsTableCellView;

/// Who shows a catalogue tree; told of loads on whichever thread they begin and end.
class DXSHARED_EXPORT DXDatabaseTreeEntryDelegate
{
public:
    virtual ~DXDatabaseTreeEntryDelegate();

    virtual void databaseTreeEntryDidBeginLoading(DXDatabaseTreeEntry &entry) = 0;
    /// Also after a load that failed; the children are in place.
    virtual void databaseTreeEntryDidFinishLoading(DXDatabaseTreeEntry &entry) = 0;
    /// What searching entry, a root, finds is up to date: the time to search again. [main]
    virtual void databaseTreeEntryDidUpdateSearchResults(DXDatabaseTreeEntry &entry);
};

/// A node of the catalogue tree: a leaf as it is, or the base of a driver's kinds of node. Owned by
/// shared pointers; a load under way keeps its node alive, a node its children and nobody above it.
///
/// The setters belong to whoever makes the node, before another thread sees it; what loading
/// changes (children, details, the loading flag) may be read and written on any thread. The rest is
/// [main].
class DXSHARED_EXPORT DXDatabaseTreeEntry : public std::enable_shared_from_this<DXDatabaseTreeEntry>
{
public:
    using List = QList<std::shared_ptr<DXDatabaseTreeEntry>>;
    /// What happens to children that were loaded already.
    enum class Reload { IfNeeded, Force };

    DXDatabaseTreeEntry();
    virtual ~DXDatabaseTreeEntry();

    std::shared_ptr<DXDatabaseTreeEntry> parent() const { return m_parent.lock(); }
    void setParent(const std::weak_ptr<DXDatabaseTreeEntry> &parent) { m_parent = parent; }
    std::shared_ptr<DXDatabaseTreeEntryDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(const std::weak_ptr<DXDatabaseTreeEntryDelegate> &delegate)
    {
        m_delegate = delegate;
    }
    /// What the node's queries connect with.
    std::shared_ptr<DabroDBC> databaseConnectionDetails() const { return m_connectionDetails; }
    void setDatabaseConnectionDetails(const std::shared_ptr<DabroDBC> &details)
    {
        m_connectionDetails = details;
    }
    /// The one that was set here, else the parent's; nothing when none above has one either.
    std::shared_ptr<DXDatabaseTreeContextHelper> contextHelper() const;
    void setContextHelper(const std::weak_ptr<DXDatabaseTreeContextHelper> &helper)
    {
        m_contextHelper = helper;
    }

    /// The text in the tree.
    virtual QString displayName() const { return m_displayName; }
    void setDisplayName(const QString &name) { m_displayName = name; }
    /// The secondary text. [any]
    virtual QString details() const;
    void setDetails(const QString &details);
    /// The name of the image before the text, such as "DatabaseTree-Table"; null for none.
    virtual QString imageName() const { return m_imageName; }
    void setImageName(const QString &name) { m_imageName = name; }
    /// The kind of cell that shows the node, and its height in pixels: null and 0 for the plain
    /// one.
    virtual QString tableCellIdentifier() const { return {}; }
    virtual int tableCellHeight() const { return 0; }
    /// Fills a "ColumnDetailsTableCellView" before it is shown.
    virtual void prepareCell(ColumnDetailsTableCellView &cell) const;
    /// The context menu, made anew on every call.
    virtual DXMenu menu();
    /// What dragging the node into an editor inserts there.
    virtual QString dragDropString() const { return displayName(); }
    virtual void onDoubleClicked() { }
    /// Keys on the selected node.
    virtual void cmdDown() { }
    virtual void cmdRight() { }

    virtual bool canHaveChildren() const { return false; }
    /// The children; nothing before the first load, which this never starts. [any]
    virtual std::shared_ptr<const List> childEntries() const;
    /// Starts loading the children in the background: true when that was started or was under way
    /// already, false when there is nothing to do. A load that fails keeps the children that exist,
    /// and loadFailure() tells why; without any, a leaf that tells it is shown instead. [any]
    virtual bool loadEntriesAsync(Reload reload);
    /// Why the children are not those that the last load should have brought; empty when they are,
    /// or when a leaf among them tells it. Of such a leaf, what it tells. [any]
    DXError loadFailure() const;
    /// Whether this is a leaf that tells of a failed load of its parent. [any]
    bool isFailureLeaf() const { return !canHaveChildren() && loadFailure(); }
    /// Whether a load is under way. [any]
    bool isLoadingAsync() const { return m_isLoading; }
    /// Drops the child from the tree; nothing when it is none of ours. [any]
    virtual void removeChild(const DXDatabaseTreeEntry &child);

    /// A copy that holds only the children which match search; nothing when none does. [any]
    virtual std::shared_ptr<DXDatabaseTreeEntry> copyWithSearchResults(const QString &search) const;
    /// Fetches what searching this node needs; false when this kind of node is not searched.
    /// [background]
    virtual bool updateSearchResults(DXError *error);

    /// Menu items that every kind of node may offer.
    DXMenu::Item newQueryMenuItem();
    DXMenu::Item disconnectMenuItem();
    DXMenu::Item refreshMenuItem();
    DXMenu::Item importMenuItem();
    /// A submenu that sends the loader's script to a query tab, the clipboard or a file. The
    /// selector is `createScriptToOptionsMenu:queryLoader:`.
    DXMenu createScriptToOptionsMenu(const QString &title,
                                     const std::shared_ptr<DXQueryLoader> &queryLoader);
    /// An action on this node that does nothing once node or helper is gone.
    using HelperAction =
        std::function<void(DXDatabaseTreeContextHelper &helper, const DXDatabaseTreeEntry &entry)>;
    DXMenu::Action actionOnHelper(const HelperAction &action);

protected:
    /// Whether loadEntriesAsync() does anything.
    virtual bool canRefresh() const { return false; }
    /// Loads the children and stores them with setChildEntries(). *Slot decides.* [background]
    virtual void loadEntries(DXError *error);
    /// After a load, successful or not, was reported as finished. [background]
    virtual void didLoadEntries() { }

    /// Replaces all children at once. [any]
    void setChildEntries(const List &children);
    /// Replaces the children by what change makes of them, and calls it again when they were
    /// replaced meanwhile; nothing before the first load. A load under way loads once more, since
    /// its answer may be from before the change. [any]
    void changeChildEntries(const std::function<List(const List &children)> &change);
    /// Makes child one of ours: this node as its parent, the same delegate, and a copy of the
    /// connection details. [any]
    void adoptChild(DXDatabaseTreeEntry &child);
    /// The same with these details, which children may share: nobody changes a node's details.
    void adoptChild(DXDatabaseTreeEntry &child, const std::shared_ptr<DabroDBC> &details);
    /// For a node that loads in a way of its own. [any]
    void setIsLoadingAsync(bool isLoading) { m_isLoading = isLoading; }
    void setLoadFailure(const DXError &error);
    /// Whether there are children other than a leaf that tells of a failed load. [any]
    bool hasLoadedChildren() const;
    /// A leaf that shows error. [any]
    std::shared_ptr<DXDatabaseTreeEntry> createErrorDetailsTreeEntry(const DXError &error);

private:
    Q_DISABLE_COPY_MOVE(DXDatabaseTreeEntry)

    void load();
    void finishLoading();

    std::weak_ptr<DXDatabaseTreeEntry> m_parent;
    std::weak_ptr<DXDatabaseTreeEntryDelegate> m_delegate;
    std::weak_ptr<DXDatabaseTreeContextHelper> m_contextHelper;
    std::shared_ptr<DabroDBC> m_connectionDetails;
    QString m_displayName;
    QString m_imageName;

    // Guards the pointer and the texts, which loading replaces whole; a list itself never changes.
    // (std::atomic<std::shared_ptr> would do for the pointer, but GCC 12's races with its own
    // load.)
    mutable std::mutex m_mutex;
    std::shared_ptr<const List> m_children;
    QString m_details;
    DXError m_loadFailure;
    std::atomic<bool> m_isLoading = false;
    // How often the children were changed one by one.
    std::atomic<quint64> m_changes = 0;
    // Taken while a load is under way; tried, never waited for, and so no DXSemaphore, which would
    // be a third of a node.
    std::atomic_flag m_dataLoadSemaphore;
};
