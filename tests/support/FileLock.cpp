// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FileLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

FileLock::FileLock(const QString &file)
    : m_descriptor(::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    , m_held(m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX) == 0)
{ }

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}
