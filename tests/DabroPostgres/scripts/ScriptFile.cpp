// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/scripts/ScriptFile.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{

ScriptFile::Script scriptNamed(const QString &words)
{
    ScriptFile::Script script{.kind = words.section(u' ', 0, 0),
                              .script = words.section(u' ', 1, 1),
                              .object = words.section(u' ', 2),
                              .values = {}};
    if (script.kind == "row"_L1) {
        script.values = script.object.split(u' ');
        script.object = script.values.takeFirst();
    }
    return script;
}

ScriptFile::Step stepOf(const QString &line)
{
    return {.verb = line.section(u' ', 0, 0),
            .script = scriptNamed(line.section(u' ', 1).section(u" : "_s, 0, 0)),
            .message = line.section(u" : "_s, 1)};
}

} // namespace

QString ScriptFile::shown(const QString &script)
{
    const QString mark(QChar(0xfff9));
    return QString(script)
        .replace("\r\n"_L1, mark)
        .replace("\n"_L1, u"↵\n"_s)
        .replace(mark, "\n"_L1);
}

ScriptFile ScriptFile::read(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    ScriptFile read;
    const QStringList sections =
        (u'\n' + QString::fromUtf8(file.readAll())).split(u"\n=== "_s).sliced(1);
    for (const QString &section : sections) {
        const QString title = section.section(u'\n', 0, 0);
        const QString body = section.section(u'\n', 1);
        const QStringList lines = body.split(u'\n', Qt::SkipEmptyParts);
        if (title == "both"_L1)
            read.both = body;
        else if (title == "objects"_L1)
            read.objects = body;
        else if (title == "lost"_L1)
            read.lost = lines;
        else if (title == "gained"_L1)
            read.gained = lines;
        else if (title.startsWith("text "_L1))
            read.texts += {.script = scriptNamed(title.mid(5)), .text = body};
        else if (title == "run"_L1)
            std::transform(lines.begin(), lines.end(), std::back_inserter(read.steps), stepOf);
        else
            ADD_FAILURE() << qPrintable(path) << ": unknown section " << qPrintable(title);
    }
    read.lost.sort();
    read.gained.sort();
    // The line break that ends the file belongs to no text.
    if (!read.texts.isEmpty())
        read.texts.last().text.chop(1);
    return read;
}
