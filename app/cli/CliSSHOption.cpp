// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliSSHOption.h"

#include <QRegularExpression>

std::optional<DXSSHTunnelModel> cliSSHTunnel(const QString &text)
{
    // No host begins with a hyphen: ssh would take it for an option.
    static const QRegularExpression expression(QStringLiteral(
        "\\A(?:([^@]+)@)?(?:\\[([^\\]]+)\\]|([^\\[\\]:@\\s-][^\\[\\]:@\\s]*))(?::(\\d+))?\\z"));
    const auto match = expression.match(text);
    if (!match.hasMatch() || text.startsWith(u'-'))
        return std::nullopt;
    DXSSHTunnelModel model;
    model.username = match.captured(1);
    model.host = match.hasCaptured(2) ? match.captured(2) : match.captured(3);
    if (match.hasCaptured(4)) {
        bool isPort = false;
        model.port = match.captured(4).toUShort(&isPort);
        if (!isPort || model.port == 0)
            return std::nullopt;
    }
    return model;
}
