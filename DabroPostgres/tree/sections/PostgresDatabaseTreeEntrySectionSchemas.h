// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dispatch/DXSemaphore.h"
#include "tree/DXDatabaseTreeEntry.h"

/// A folder "Schemas", which no node holds and which stays empty.
class PostgresDatabaseTreeEntrySectionSchemas final : public DXDatabaseTreeEntry
{
public:
    QString displayName() const override;
    QString imageName() const override;
    bool canHaveChildren() const override { return true; }
    /// Loads nothing: the first call answers false, every later one true.
    bool loadEntriesAsync(Reload reload) override;

private:
    DXSemaphore m_dataLoadSemaphore{1};
};
