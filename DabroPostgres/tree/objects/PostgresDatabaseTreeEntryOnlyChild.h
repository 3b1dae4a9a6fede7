// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

#include <mutex>

/// A node with at most one child, which takes no query to make: it is made when somebody first asks
/// for the children.
class PostgresDatabaseTreeEntryOnlyChild : public DXDatabaseTreeEntry
{
public:
    ~PostgresDatabaseTreeEntryOnlyChild() override;

    /// Nothing when canHaveChildren() is false.
    std::shared_ptr<const List> childEntries() const override;

protected:
    /// A new child, which becomes this node's. [any]
    virtual std::shared_ptr<DXDatabaseTreeEntry> makeChild() const = 0;

private:
    mutable std::once_flag m_once;
    mutable std::shared_ptr<const List> m_onlyChild;
};
