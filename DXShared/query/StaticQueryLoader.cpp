// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/StaticQueryLoader.h"

StaticQueryLoader::StaticQueryLoader(const QString &query)
    : m_query(query)
{ }

void StaticQueryLoader::beginLoadingQuery(const DabroDBC &details)
{
    Q_UNUSED(details)
    deliver(m_query);
}
