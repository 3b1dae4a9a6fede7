// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// A look at a shared library file before anything of it is loaded. [any]
namespace DXElfFile
{

/// Why the file cannot be a shared library for this machine that is there in full; empty when it
/// may be one. The loader of the system does not look (it maps what a truncated file lacks, and the
/// process dies of SIGBUS at its first use). Source of facts: elf(5).
QString faultOf(const QString &path);

} // namespace DXElfFile
