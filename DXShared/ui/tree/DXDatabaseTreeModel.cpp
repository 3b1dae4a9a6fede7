// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree/DXDatabaseTreeModel.h"

#include "dispatch/DXDispatch.h"
#include "tree/ColumnDetailsTableCellView.h"
#include "ui/DXToolTip.h"

#include <QMimeData>

#include <algorithm>
#include <typeinfo>

namespace
{

bool fillsItsCell(const DXDatabaseTreeEntry &entry)
{
    return entry.tableCellIdentifier() == QLatin1String("ColumnDetailsTableCellView");
}

// What is shown of an entry: some kinds fill a cell of two texts.
ColumnDetailsTableCellView cellOf(const DXDatabaseTreeEntry &entry)
{
    ColumnDetailsTableCellView cell{.columnNameTextField = entry.displayName(),
                                    .columnDetailsTextField = entry.details()};
    if (fillsItsCell(entry))
        entry.prepareCell(cell);
    return cell;
}

// What the children that are shown do not tell.
QString failureOf(const DXDatabaseTreeEntry &entry)
{
    return entry.isFailureLeaf() ? QString() : entry.loadFailure().description().trimmed();
}

QString wholeTextOf(const DXDatabaseTreeEntry &entry)
{
    QString text = entry.displayName();
    if (!entry.details().isEmpty())
        text += QStringLiteral(" (%1)").arg(entry.details());
    if (const QString failure = failureOf(entry); !failure.isEmpty())
        text += u'\n' + DXDatabaseTreeModel::tr("Loading failed: %1").arg(failure);
    return text;
}

// Details change with what they tell of, save where they tell overloads of one name apart.
QString identityOf(const DXDatabaseTreeEntry &entry)
{
    QString identity = QLatin1String(typeid(entry).name()) + u' ' + entry.displayName();
    if (fillsItsCell(entry))
        identity += u' ' + cellOf(entry).columnDetailsTextField;
    return identity;
}

} // namespace

/// Carries what the entries tell on any thread to the main one. It may outlive the model.
class DXDatabaseTreeModel::Observer final : public DXDatabaseTreeEntryDelegate,
                                            public std::enable_shared_from_this<Observer>
{
public:
    explicit Observer(DXDatabaseTreeModel *model)
        : m_model(model)
    { }

    void databaseTreeEntryDidBeginLoading(DXDatabaseTreeEntry &entry) override { forward(entry); }
    void databaseTreeEntryDidFinishLoading(DXDatabaseTreeEntry &entry) override
    {
        forward(entry);
        DXDispatch::main([self = shared_from_this(), ended = entry.shared_from_this()] {
            if (self->m_model && self->m_model->indexOf(*ended).isValid())
                Q_EMIT self->m_model->loadEnded(ended);
        });
    }
    void databaseTreeEntryDidUpdateSearchResults(DXDatabaseTreeEntry &entry) override
    {
        Q_UNUSED(entry)
        if (m_model)
            Q_EMIT m_model->searchResultsUpdated();
    }
    /// [main]
    void modelIsGone() { m_model = nullptr; }
    void forward(DXDatabaseTreeEntry &entry)
    {
        DXDispatch::main([self = shared_from_this(), changed = entry.shared_from_this()] {
            if (self->m_model)
                self->m_model->entryChanged(changed);
        });
    }

private:
    DXDatabaseTreeModel *m_model;
};

DXDatabaseTreeModel::DXDatabaseTreeModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_top(std::make_unique<Node>(Node{.isFetched = true}))
    , m_observer(std::make_shared<Observer>(this))
{ }

DXDatabaseTreeModel::~DXDatabaseTreeModel()
{
    m_observer->modelIsGone();
}

void DXDatabaseTreeModel::setRoots(const DXDatabaseTreeEntry::List &roots)
{
    beginResetModel();
    m_roots = roots;
    m_nodes.clear();
    m_top = std::make_unique<Node>(Node{.isFetched = true});
    for (const auto &root : roots) {
        // One that is shown already may be loading, and what loads reads its delegate.
        if (root->delegate() != m_observer)
            observe(*root);
        m_top->children.push_back(std::make_unique<Node>(
            Node{.entry = root, .parent = m_top.get(), .row = int(m_top->children.size())}));
        m_nodes.insert(root.get(), m_top->children.back().get());
    }
    endResetModel();
}

void DXDatabaseTreeModel::observe(DXDatabaseTreeEntry &entry) const
{
    entry.setDelegate(m_observer);
    if (const auto children = entry.childEntries()) {
        for (const auto &child : *children)
            observe(*child);
    }
}

std::shared_ptr<DXDatabaseTreeEntry> DXDatabaseTreeModel::entry(const QModelIndex &index) const
{
    return nodeOf(index)->entry;
}

QModelIndex DXDatabaseTreeModel::indexOf(const DXDatabaseTreeEntry &entry) const
{
    const Node *const node = m_nodes.value(&entry);
    return node ? indexOf(*node) : QModelIndex();
}

// Nothing turns for what loads at once.
bool DXDatabaseTreeModel::isSlow(const Node &node)
{
    return node.loading.isValid() && node.loading.elapsed() >= 150;
}

int DXDatabaseTreeModel::loadingCount() const
{
    return static_cast<int>(std::count_if(
        m_nodes.begin(), m_nodes.end(), [](const Node *node) { return node->loading.isValid(); }));
}

void DXDatabaseTreeModel::reload()
{
    const QList<Node *> nodes = m_nodes.values();
    QList<std::shared_ptr<DXDatabaseTreeEntry>> entries;
    for (const Node *node : nodes)
        entries.append(node->entry);
    for (const auto &entry : entries)
        entryChanged(entry);
}

DXDatabaseTreeModel::Node *DXDatabaseTreeModel::nodeOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : m_top.get();
}

QModelIndex DXDatabaseTreeModel::indexOf(const Node &node) const
{
    return node.parent ? createIndex(node.row, 0, &node) : QModelIndex();
}

QModelIndex DXDatabaseTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const auto &children = nodeOf(parent)->children;
    if (column != 0 || row < 0 || std::size_t(row) >= children.size())
        return {};
    return createIndex(row, 0, children[std::size_t(row)].get());
}

QModelIndex DXDatabaseTreeModel::parent(const QModelIndex &index) const
{
    const Node *const parent = nodeOf(index)->parent;
    return parent ? indexOf(*parent) : QModelIndex();
}

int DXDatabaseTreeModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(nodeOf(parent)->children.size());
}

int DXDatabaseTreeModel::columnCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return 1;
}

bool DXDatabaseTreeModel::hasChildren(const QModelIndex &parent) const
{
    const Node *const node = nodeOf(parent);
    if (node->isFetched && !(node->entry && node->entry->isLoadingAsync()))
        return !node->children.empty();
    return node->entry && node->entry->canHaveChildren();
}

bool DXDatabaseTreeModel::canFetchMore(const QModelIndex &parent) const
{
    const Node *const node = nodeOf(parent);
    return !node->isFetched && node->entry->canHaveChildren();
}

void DXDatabaseTreeModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    Node &node = *nodeOf(parent);
    node.isFetched = true;
    node.entry->loadEntriesAsync(DXDatabaseTreeEntry::Reload::IfNeeded);
    // What is there already is shown from the event loop: views call this while rows are inserted.
    m_observer->forward(*node.entry);
}

QVariant DXDatabaseTreeModel::data(const QModelIndex &index, int role) const
{
    const auto shown = entry(index);
    if (!shown)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return cellOf(*shown).columnNameTextField;
    case Qt::ToolTipRole:
        return DXToolTip::plain(wholeTextOf(*shown));
    case Qt::AccessibleTextRole:
        return wholeTextOf(*shown);
    case Qt::DecorationRole:
        return shown->imageName();
    case DetailsRole:
        return cellOf(*shown).columnDetailsTextField;
    case IdentityRole:
        return identityOf(*shown);
    case LoadingRole:
        return isSlow(*nodeOf(index));
    case FailureRole:
        return failureOf(*shown);
    default:
        return {};
    }
}

Qt::ItemFlags DXDatabaseTreeModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled
                           : Qt::NoItemFlags;
}

QStringList DXDatabaseTreeModel::mimeTypes() const
{
    return {QStringLiteral("text/plain")};
}

QMimeData *DXDatabaseTreeModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList texts;
    for (const QModelIndex &index : indexes)
        texts.append(entry(index)->dragDropString());
    auto *const data = new QMimeData;
    data->setText(texts.join(QLatin1String(", ")));
    return data;
}

void DXDatabaseTreeModel::entryChanged(const std::shared_ptr<DXDatabaseTreeEntry> &entry)
{
    if (Node *const node = m_nodes.value(entry.get())) {
        if (!entry->isLoadingAsync())
            node->loading.invalidate();
        else if (!node->loading.isValid())
            node->loading.start();
        if (node->isFetched)
            synchronize(*node);
        const QModelIndex index = indexOf(*node);
        Q_EMIT dataChanged(index, index);
    }
    Q_EMIT loadingChanged();
}

// Rows whose entries are still there, in the same order, stay.
void DXDatabaseTreeModel::synchronize(Node &node)
{
    const auto held = node.entry->childEntries();
    const DXDatabaseTreeEntry::List entries = held ? *held : DXDatabaseTreeEntry::List();
    QHash<const DXDatabaseTreeEntry *, qsizetype> newRows;
    for (qsizetype row = 0; row < entries.size(); ++row)
        newRows.insert(entries[row].get(), row);
    const auto newRowOf = [&](const std::unique_ptr<Node> &child) {
        return newRows.value(child->entry.get(), -1);
    };
    qsizetype lowest = entries.size();
    for (auto row = static_cast<qsizetype>(node.children.size()); row-- > 0;) {
        const qsizetype last = row;
        while (row >= 0
               && (newRowOf(node.children[std::size_t(row)]) < 0
                   || newRowOf(node.children[std::size_t(row)]) >= lowest))
            --row;
        dropRows(node, row + 1, last - row);
        if (row >= 0)
            lowest = newRowOf(node.children[std::size_t(row)]);
    }
    for (qsizetype row = 0; row < entries.size(); ++row) {
        const qsizetype first = row;
        const auto isShown = [&] {
            return std::size_t(first) < node.children.size()
                   && node.children[std::size_t(first)]->entry == entries[row];
        };
        while (row < entries.size() && !isShown())
            ++row;
        addRows(node, first, entries.mid(first, row - first));
    }
}

void DXDatabaseTreeModel::dropRows(Node &node, qsizetype from, qsizetype count)
{
    if (count == 0)
        return;
    const auto first = static_cast<int>(from);
    beginRemoveRows(indexOf(node), first, first + static_cast<int>(count) - 1);
    const auto begin = node.children.begin() + first;
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    std::for_each(begin, end, [this](const auto &child) { forget(*child); });
    node.children.erase(begin, end);
    renumber(node, std::size_t(first));
    endRemoveRows();
}

void DXDatabaseTreeModel::addRows(Node &node, qsizetype from,
                                  const DXDatabaseTreeEntry::List &entries)
{
    if (entries.isEmpty())
        return;
    const auto first = static_cast<int>(from);
    beginInsertRows(indexOf(node), first, first + static_cast<int>(entries.size()) - 1);
    std::vector<std::unique_ptr<Node>> nodes;
    nodes.reserve(std::size_t(entries.size()));
    for (const auto &entry : entries) {
        nodes.push_back(std::make_unique<Node>(Node{.entry = entry, .parent = &node}));
        m_nodes.insert(entry.get(), nodes.back().get());
    }
    node.children.insert(node.children.begin() + first, std::make_move_iterator(nodes.begin()),
                         std::make_move_iterator(nodes.end()));
    renumber(node, std::size_t(first));
    endInsertRows();
}

void DXDatabaseTreeModel::forget(const Node &node)
{
    m_nodes.remove(node.entry.get());
    for (const auto &child : node.children)
        forget(*child);
}

void DXDatabaseTreeModel::renumber(Node &node, std::size_t from)
{
    for (std::size_t row = from; row < node.children.size(); ++row)
        node.children[row]->row = static_cast<int>(row);
}
