// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnelModel.h"

#include <QString>

#include <optional>

/// Reads ssh's "[user@]host[:port]", with an IPv6 address in brackets. Nothing when it cannot be
/// that. [any]
std::optional<DXSSHTunnelModel> cliSSHTunnel(const QString &text);
