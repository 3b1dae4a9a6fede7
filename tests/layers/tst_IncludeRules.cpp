// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "layers/IncludeRules.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace
{

const QString root = QStringLiteral(DX_SOURCE_FOLDER "/");

QString contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

QString table()
{
    return contents(root + u"tests/layers/folders"_s);
}

bool isWidgetHeader(const QString &name)
{
    const QString headers = QLibraryInfo::path(QLibraryInfo::HeadersPath) + u"/QtWidgets/"_s;
    return name.startsWith("QtWidgets"_L1) || QFile::exists(headers + name);
}

QStringList sources()
{
    QStringList found;
    for (const QString &room : {u"DXShared"_s, u"DabroPostgres"_s, u"app"_s}) {
        QDirIterator files(root + room, {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            found += files.next().mid(root.size());
    }
    return found;
}

TEST(IncludeRules, HoldInTheTree)
{
    const IncludeRules rules(
        {.table = table(),
         .exists = [](const QString &path) { return QFile::exists(root + path); },
         .isWidgetHeader = isWidgetHeader});
    const QStringList paths = sources();
    QStringList faults;
    for (const QString &path : paths)
        faults += rules.faults(path, contents(root + path));

    EXPECT_THAT(paths, testing::Contains(u"DXShared/core/DXError.h"_s));
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(faults.join(u'\n'));
}

struct Include
{
    const char *from;
    const char *line;
    const char *fault;
};

class IncludeRulesOf : public testing::TestWithParam<Include>
{ };

TEST_P(IncludeRulesOf, JudgeALine)
{
    const QStringList tree{u"DXShared/core/A.h"_s,        u"DXShared/client/B.h"_s,
                           u"DXShared/tree/T.h"_s,        u"DXShared/ui/U.h"_s,
                           u"DabroPostgres/driver/D.h"_s, u"DabroPostgres/tree/P.h"_s,
                           u"DabroPostgres/Entry.h"_s,    u"app/cli/C.h"_s};
    const IncludeRules rules({.table = table(),
                              .exists = [&](const QString &path) { return tree.contains(path); },
                              .isWidgetHeader = isWidgetHeader});
    const Include &given = GetParam();
    const QString text = u"// text\n"_s + QString::fromUtf8(given.line) + u"\nint x;\n"_s;

    const QString faults = rules.faults(QString::fromUtf8(given.from), text).join(u'\n');

    if (*given.fault)
        EXPECT_THAT(faults.toStdString(), testing::HasSubstr(given.fault));
    else
        EXPECT_EQ(faults, QString());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, IncludeRulesOf,
    testing::Values(
        Include{"DXShared/core/X.cpp", "#include \"core/A.h\"", ""},
        Include{"DXShared/core/X.cpp", "#include <QString>", ""},
        Include{"DXShared/core/X.cpp", "#include \"client/B.h\"", "DXShared/core may not include"},
        Include{"DXShared/core/X.cpp", "  #  include \"client/B.h\"", "X.cpp:2: "},
        Include{"DXShared/core/X.cpp", "#include \"../client/B.h\"", "climbs out"},
        Include{"DXShared/core/X.cpp", "#include \"A.h\"", "names no file"},
        Include{"DXShared/core/X.cpp", "#include <core/A.h>", "belongs in quotes"},
        Include{"DXShared/core/X.cpp", "#include HEADER", "not a plain name"},
        Include{"DXShared/client/X.h", "#include \"driver/D.h\"", "may not include"},
        Include{"DXShared/client/X.h", "#include <libpq-fe.h>", "may not use libpq"},
        Include{"DXShared/tree/X.h", "#include <QMenu>", "may not use Qt Widgets"},
        Include{"DXShared/tree/X.h", "#include <QtWidgets/QMenu>", "may not use Qt Widgets"},
        Include{"DXShared/tree/X.h", "#include \"ui_Sheet.h\"", "shows widgets"},
        Include{"DXShared/ui/X.h", "#include <QMenu>", ""},
        Include{"DabroPostgres/driver/X.h", "#include <libpq-fe.h>", ""},
        Include{"DabroPostgres/driver/X.h", "#include \"ui/U.h\"", "may not include"},
        Include{"DabroPostgres/scripts/X.h", "#include <libpq-fe.h>", "may not use libpq"},
        Include{"DabroPostgres/scripts/X.h", "#include \"tree/P.h\"", "may not include"},
        Include{"DabroPostgres/scripts/X.h", "#include \"tree/T.h\"", ""},
        Include{"DabroPostgres/scripts/table/X.h", "#include \"tree/P.h\"", "may not include"},
        Include{"DabroPostgres/scripts/table/X.h", "#include \"driver/D.h\"", ""},
        Include{"DabroPostgres/tree/X.h", "#include \"tree/P.h\"", ""},
        Include{"DabroPostgres/X.cpp", "#include \"Entry.h\"", ""},
        Include{"DabroPostgres/driver/X.cpp", "#include \"Entry.h\"", "may not include"},
        Include{"app/cli/X.cpp", "#include \"driver/D.h\"", "may not include"},
        Include{"app/cli/X.cpp", "#include \"cli/C.h\"", ""},
        Include{"DXShared/misc/X.h", "", "does not know this folder"}));

} // namespace
