// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXCompletionModel.h"

#include "ui/DXIcon.h"

#include <QGuiApplication>
#include <QPalette>

namespace
{

using Kind = DXSQLCompletion::Kind;

QString iconName(Kind kind)
{
    switch (kind) {
    case Kind::Column:
        return QStringLiteral("DatabaseTree-Column");
    case Kind::Alias:
    case Kind::Table:
        return QStringLiteral("DatabaseTree-Table");
    case Kind::CommonTable:
        return QStringLiteral("DatabaseTree-View");
    case Kind::Schema:
        return QStringLiteral("DatabaseTree-Schema");
    case Kind::Function:
        return QStringLiteral("DatabaseTree-StoredProcedure");
    case Kind::Keyword:
        break;
    }
    return {};
}

QString secondary(const DXSQLCompletion::Candidate &candidate)
{
    switch (candidate.kind) {
    case Kind::CommonTable:
        return DXCompletionModel::tr("WITH");
    case Kind::Schema:
        return DXCompletionModel::tr("schema");
    case Kind::Function:
        return DXCompletionModel::tr("function");
    default:
        break;
    }
    QStringList parts = {candidate.details, candidate.parent};
    parts.removeAll(QString());
    return parts.join(QStringLiteral("  ·  "));
}

} // namespace

DXCompletionModel::DXCompletionModel(QObject *parent)
    : QAbstractListModel(parent)
{ }

void DXCompletionModel::setCandidates(const QList<DXSQLCompletion::Candidate> &candidates)
{
    beginResetModel();
    m_candidates = candidates;
    endResetModel();
}

int DXCompletionModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_candidates.size());
}

QVariant DXCompletionModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DXSQLCompletion::Candidate &candidate = m_candidates[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return candidate.name;
    case Qt::DecorationRole: {
        const QString name = iconName(candidate.kind);
        return name.isEmpty() ? QVariant() : DXIcon::named(name, QGuiApplication::palette());
    }
    case SecondaryRole:
        return secondary(candidate);
    case Qt::AccessibleTextRole:
        return QString(candidate.name + u' ' + secondary(candidate));
    default:
        return {};
    }
}
