// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

class QLabel;
class QWidget;

/// Labels as sheets and forms need them again and again. [main]
namespace DXLabels
{

/// Shows text as it is, whoever wrote it, in as many lines as it takes.
DXSHARED_EXPORT QLabel *plain(const QString &text = {});
/// Names editor, and stands in line with it where a message may follow below it.
DXSHARED_EXPORT QLabel *of(const QString &name, QWidget *editor);

} // namespace DXLabels
