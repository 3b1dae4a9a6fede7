// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSavedConnectionsModel.h"

#include "client/SQLRecentConnection.h"
#include "core/DXCollation.h"
#include "ui/DXToolTip.h"

#include <QMap>

#include <algorithm>

namespace
{

bool matches(const SQLRecentConnection &record, const QStringList &words)
{
    const QString text =
        QStringList{record.alias(), record.serverHost(), record.database(), record.username()}.join(
            u'\n');
    return std::all_of(words.begin(), words.end(), [&text](const QString &word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}

QStandardItem *itemOf(const SQLRecentConnection &record)
{
    using Model = DXSavedConnectionsModel;
    auto *const item = new QStandardItem(Model::nameOf(record));
    const QString secondary = Model::secondaryTextOf(record);
    item->setData(secondary, Model::SecondaryRole);
    item->setData(record.effectiveTabColor(), Model::ColorRole);
    item->setData(record.connectionId(), Model::IdRole);
    item->setData(QStringLiteral("%1, %2").arg(item->text(), secondary), Qt::AccessibleTextRole);
    item->setToolTip(DXToolTip::plain(
        record.username().isEmpty() ? secondary : record.username() + u'@' + secondary));
    item->setEditable(false);
    return item;
}

QStandardItem *groupItem(const QString &name)
{
    auto *const item = new QStandardItem(name);
    item->setData(true, DXSavedConnectionsModel::IsGroupRole);
    item->setEditable(false);
    return item;
}

} // namespace

QString DXSavedConnectionsModel::groupOf(const SQLRecentConnection &record)
{
    const QString alias = record.alias();
    const qsizetype slash = alias.lastIndexOf(u'/');
    return slash > 0 ? alias.first(slash).trimmed() : QString();
}

QString DXSavedConnectionsModel::nameOf(const SQLRecentConnection &record)
{
    const QString alias = record.alias();
    const QString group = groupOf(record);
    const QString name =
        (group.isEmpty() ? alias : alias.sliced(alias.lastIndexOf(u'/') + 1)).trimmed();
    if (!name.isEmpty())
        return name;
    for (const QString &other : {record.database(), record.hostDisplay(), record.username()}) {
        if (!other.isEmpty())
            return other;
    }
    return tr("Local server");
}

QString DXSavedConnectionsModel::secondaryTextOf(const SQLRecentConnection &record)
{
    QString text = record.hostDisplay().isEmpty() ? tr("local server") : record.hostDisplay();
    if (!record.database().isEmpty())
        text += QStringLiteral(" / ") + record.database();
    return text;
}

void DXSavedConnectionsModel::show(const QList<Record> &records, const QString &filter)
{
    clear();
    m_records.clear();
    const QStringList words = filter.split(u' ', Qt::SkipEmptyParts);
    QMap<QString, QList<QStandardItem *>> groups;
    for (const Record &record : records) {
        if (!matches(*record, words))
            continue;
        m_records.insert(record->connectionId(), record);
        const QString group = groupOf(*record);
        if (group.isEmpty())
            appendRow(itemOf(*record));
        else
            groups[group].append(itemOf(*record));
    }
    const QStringList names = DXCollation::sorted(groups.keys());
    for (const QString &name : names) {
        QStandardItem *const item = groupItem(name);
        item->appendRows(groups.value(name));
        appendRow(item);
    }
}

DXSavedConnectionsModel::Record DXSavedConnectionsModel::recordAt(const QModelIndex &index) const
{
    return m_records.value(index.data(IdRole).toString());
}

QModelIndex DXSavedConnectionsModel::indexOfId(const QString &connectionId) const
{
    if (connectionId.isEmpty() || rowCount() == 0)
        return {};
    return match(index(0, 0), IdRole, connectionId, 1, Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
}

QModelIndex DXSavedConnectionsModel::firstEntry() const
{
    const QModelIndex first = index(0, 0);
    return first.data(IsGroupRole).toBool() ? index(0, 0, first) : first;
}
