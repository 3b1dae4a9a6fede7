// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Types into a journal in the folder given, without an end, until it is killed.

#include "client/DXTextJournal.h"
#include "dispatch/DXDispatch.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    DXError error;
    const auto journal = DXTextJournal::open(QCoreApplication::arguments().value(1), &error);
    if (!journal) {
        std::fprintf(stderr, "%s\n", qPrintable(error.description()));
        return 1;
    }
    DXTextRecord record{.id = QStringLiteral("killed"), .title = QStringLiteral("Killed")};
    QTimer keys;
    QObject::connect(&keys, &QTimer::timeout, &keys, [&] {
        record.text += QStringLiteral("select 'ä' || %1;\n").arg(record.caret++);
        journal->changed(record.id, [&record] { return record; });
    });
    keys.start(std::chrono::milliseconds(5));
    const int status = QCoreApplication::exec();
    DXDispatch::shutdown();
    return status;
}
