// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/query/SQLCorpus.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

QList<SQLCorpus::Script> readScripts()
{
    static const QRegularExpression psqlCommand(QStringLiteral("^\\\\.*$"),
                                                QRegularExpression::MultilineOption);
    QList<SQLCorpus::Script> scripts;
    QDirIterator files(QStringLiteral("/usr/share/postgresql"), {QStringLiteral("*.sql")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QFile::ReadOnly)) << file.fileName().toStdString();
        scripts.append({file.fileName(), QString::fromUtf8(file.readAll()).remove(psqlCommand)});
    }
    std::sort(scripts.begin(), scripts.end(),
              [](const auto &left, const auto &right) { return left.name < right.name; });
    return scripts;
}

} // namespace

const QList<SQLCorpus::Script> &SQLCorpus::scripts()
{
    static const QList<Script> result = readScripts();
    EXPECT_GE(result.size(), 100) << "install PostgreSQL's server, whose scripts are compared";
    return result;
}
