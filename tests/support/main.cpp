// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXDispatch.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    const int status = RUN_ALL_TESTS();
    // Threads that outlive main() never give back what OpenSSL keeps for each of them.
    DXDispatch::shutdown();
    return status;
}
