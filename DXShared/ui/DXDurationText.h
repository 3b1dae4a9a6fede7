// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QCoreApplication>
#include <QString>

/// Durations in milliseconds, for people. [any]
class DXSHARED_EXPORT DXDurationText final
{
    Q_DECLARE_TR_FUNCTIONS(DXDurationText)

public:
    /// To three digits or so: 38 ms, 2.4 s, 1:05.
    static QString rounded(qint64 milliseconds);
    /// In whole seconds: 0:42, 1:05:00.
    static QString clock(qint64 milliseconds);

private:
    DXDurationText() = delete;
};
