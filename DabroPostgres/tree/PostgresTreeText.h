// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

/// The translations of the catalogue tree's titles.
struct PostgresTreeText
{
    Q_DECLARE_TR_FUNCTIONS(PostgresTreeText)
};
