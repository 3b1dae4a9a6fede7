// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QtCore/qglobal.h>

/// A stretch of text, in UTF-16 code units as QString counts them.
struct DXTextRange
{
    qsizetype location = 0;
    qsizetype length = 0;

    /// The position just behind the range.
    qsizetype end() const { return location + length; }

    friend bool operator==(const DXTextRange &, const DXTextRange &) = default;
};

Q_DECLARE_METATYPE(DXTextRange)
