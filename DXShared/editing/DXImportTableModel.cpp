// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXImportTableModel.h"

DXImportTableModel::~DXImportTableModel() = default;

QStringList DXImportTableModel::tablePath() const
{
    return {m_name};
}

void DXImportTableModel::setTablePath(const QStringList &path)
{
    m_name = path.isEmpty() ? QString() : path.last();
}
