// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// An exclusive flock(2) on a file, made when it is missing. The kernel gives it back when this
/// object or the program ends, however that ends; programs that we start do not inherit it.
class FileLock final
{
public:
    /// Waits until the lock is free.
    explicit FileLock(const QString &file);
    ~FileLock();

    bool isHeld() const { return m_held; }

private:
    Q_DISABLE_COPY_MOVE(FileLock)

    int m_descriptor;
    bool m_held;
};
