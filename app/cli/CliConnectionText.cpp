// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliConnectionText.h"

void CliConnectionText::append(const QString &key, const QString &value)
{
    if (value.isNull())
        return;
    QString quoted = value;
    quoted.replace(u'\\', QLatin1String("\\\\")).replace(u'\'', QLatin1String("\\'"));
    m_entries.append(QStringLiteral("%1='%2'").arg(key, quoted));
}
