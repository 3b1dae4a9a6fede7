// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The statements that psql cuts a script into and sends, in order. They reach a server, but none
/// is run: they are in a transaction that has failed. Fails the running test when psql cannot run.
QStringList sentByPsql(const QString &script);
