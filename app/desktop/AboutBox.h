// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

/// What the program is and under which licence, in a sheet on its window. [main]
namespace AboutBox
{

void open(QWidget &window);

} // namespace AboutBox
