// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DabroDatabaseConnectionPool.h"
#include "dispatch/DXDispatch.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    // Windows of tests are drawn in memory, whatever display there is.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    const int status = RUN_ALL_TESTS();
    // Its idle connections would keep their tunnels, each of them a child and a thread.
    DabroDatabaseConnectionPool::shutdown();
    DXDispatch::shutdown();
    return status;
}
