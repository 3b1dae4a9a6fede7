// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/DXSQLCompletion.h"

#include <QAbstractListModel>

/// The candidates of a completion as rows: names, with their icons as decoration. [main]
class DXSHARED_EXPORT DXCompletionModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        /// Where a name is from and its type, for the eye only.
        SecondaryRole = Qt::UserRole,
    };

    explicit DXCompletionModel(QObject *parent = nullptr);

    void setCandidates(const QList<DXSQLCompletion::Candidate> &candidates);
    const QList<DXSQLCompletion::Candidate> &candidates() const { return m_candidates; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QList<DXSQLCompletion::Candidate> m_candidates;
};
