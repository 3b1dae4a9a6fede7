// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

#include <functional>

class QWidget;

/// The desktop's question where a file is to be saved. [main]
class DXSHARED_EXPORT DXSaveDialog final
{
public:
    enum class FileType { Sql, Csv };

    /// Asks in a sheet on parent's window, and returns at once. chosen is called with the path,
    /// when the user took one while parent was there.
    static void open(QWidget *parent, const QString &title, FileType type,
                     const std::function<void(const QString &path)> &chosen);

    DXSaveDialog() = delete;
};
