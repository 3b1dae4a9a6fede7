// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>

#include <gtest/gtest.h>

/// A bus of the test's own, with a connection for the "desktop" and one for the "program".
class SessionBus : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

private:
    QProcess m_daemon;
};
