// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQueryLoader.h"

#include "dispatch/DXDispatch.h"

#include <utility>

DXQueryLoaderDelegate::~DXQueryLoaderDelegate() = default;

DXQueryLoader::DXQueryLoader() = default;
DXQueryLoader::~DXQueryLoader() = default;

void DXQueryLoader::deliver(const QString &query)
{
    if (const auto delegate = m_delegate.lock())
        delegate->queryLoaderLoadedQuery(*this, query);
}

void DXQueryLoader::deliverFromBackground(std::function<QString()> makeQuery)
{
    DXDispatch::background([self = shared_from_this(), makeQuery = std::move(makeQuery)] {
        self->deliver(makeQuery());
    });
}
