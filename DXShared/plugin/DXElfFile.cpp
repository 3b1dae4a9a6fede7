// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/DXElfFile.h"

#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <elf.h>
#include <link.h>

namespace
{

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

constexpr unsigned char machineClass = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;

template<typename Record>
bool readRecord(QFile &file, Record &record)
{
    return file.read(reinterpret_cast<char *>(&record), sizeof(Record)) == sizeof(Record);
}

bool isInside(quint64 offset, quint64 size, qint64 fileSize)
{
    const auto whole = static_cast<quint64>(fileSize);
    return offset <= whole && size <= whole - offset;
}

bool hasAllItsSegments(QFile &file, const Header &header)
{
    if (header.e_phentsize != sizeof(Segment) || header.e_phnum == 0
        || !isInside(header.e_phoff, quint64(header.e_phnum) * sizeof(Segment), file.size())
        || !file.seek(static_cast<qint64>(header.e_phoff)))
        return false;
    for (int i = 0; i < header.e_phnum; ++i) {
        Segment segment;
        if (!readRecord(file, segment)
            || !isInside(segment.p_offset, segment.p_filesz, file.size()))
            return false;
    }
    return isInside(header.e_shoff, quint64(header.e_shnum) * header.e_shentsize, file.size());
}

} // namespace

QString DXElfFile::faultOf(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("It is a link to a file that does not exist.");
    if (!info.isFile())
        return QStringLiteral("It is not a regular file.");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("It cannot be read: %1.").arg(file.errorString());
    Header header;
    if (!readRecord(file, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0)
        return QStringLiteral("It is not a shared library.");
    if (header.e_ident[EI_CLASS] != machineClass || header.e_type != ET_DYN)
        return QStringLiteral("It is not a shared library for this kind of machine.");
    if (!hasAllItsSegments(file, header))
        return QStringLiteral("It is not complete: install it again.");
    return {};
}
