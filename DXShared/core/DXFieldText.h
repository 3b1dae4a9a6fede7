// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QByteArray>
#include <QByteArrayView>

/// One field in the text formats in which rows leave the program. All in UTF-8, appended to line.
/// [any]
namespace DXFieldText
{

/// RFC 4180: in quotes when the text is empty or needs them. NULL is nothing at all.
DXSHARED_EXPORT void appendCsv(QByteArray &line, QByteArrayView text);
/// Tabs, line breaks and backslashes written as \t, \n, \r and \\. NULL is \N.
DXSHARED_EXPORT void appendTsv(QByteArray &line, QByteArrayView text);
/// A string of JSON; whatever does not print is escaped.
DXSHARED_EXPORT void appendJson(QByteArray &line, QByteArrayView text);

} // namespace DXFieldText
