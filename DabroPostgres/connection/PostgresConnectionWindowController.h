// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/connection/DXConnectionWindowController.h"

#include <memory>

class PostgresDatabaseConnectionDetails;

/// The dialog of a PostgreSQL connection. [main]
class PostgresConnectionWindowController final : public DXConnectionWindowController
{
    Q_OBJECT

public:
    /// Edits the record of list that has the id of details, or begins a new one with them. list
    /// outlives this.
    PostgresConnectionWindowController(
        const std::shared_ptr<const PostgresDatabaseConnectionDetails> &details,
        SQLRecentConnectionList &list);

protected:
    QString title() const override;
    DXConnectionForm *createForm() override;
    Record initialRecord() const override;
    Record newRecord() const override;

private:
    const std::shared_ptr<const PostgresDatabaseConnectionDetails> m_details;
};
