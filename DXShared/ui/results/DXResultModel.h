// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "core/DXGlobal.h"

#include <QAbstractTableModel>
#include <QTimer>

#include <memory>

/// The rows of one statement as an item model, while they arrive: what was handed over since the
/// last look is inserted at most 30 times a second, and a cell becomes a value only when it is
/// shown. [main]
class DXSHARED_EXPORT DXResultModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        /// Whether the cell is NULL.
        NullRole = Qt::UserRole
    };
    /// Cells are shown in one line of at most so many characters; what is copied is whole.
    static constexpr qsizetype shownCharacters = 1000;

    explicit DXResultModel(const std::shared_ptr<const DXQueryResultDetails> &details,
                           QObject *parent = nullptr);

    const DXQueryResultDetails &details() const { return *m_details; }
    /// Takes over what has arrived; a timer does so by itself until the statement has finished.
    void update();
    /// The whole value of a cell; the null marker beyond either end.
    DXValue value(int row, int column) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    /// Whether the first rows hold numbers there.
    bool isNumeric(int column) const;

private:
    const std::shared_ptr<const DXQueryResultDetails> m_details;
    const QStringList m_columnNames;
    QTimer m_timer;
    int m_rowCount = 0;
};
