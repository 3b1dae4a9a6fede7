// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// Real SQL: the scripts that PostgreSQL's packages install, without psql's commands.
namespace SQLCorpus
{

struct Script
{
    QString name;
    QString text;
};

/// Every script, in the order of their names. Fails the running test when there are so few that
/// PostgreSQL's server package must be missing.
const QList<Script> &scripts();

} // namespace SQLCorpus
