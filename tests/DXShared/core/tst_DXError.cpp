// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXError.h"

#include "support/PrintQt.h"

#include <gtest/gtest.h>

namespace
{

TEST(DXError, TakesTheQuotedLineOutOfAMessage)
{
    EXPECT_EQ(DXError::withoutQuotedLine(u"ERROR:  no\nLINE 1: selec\n        ^\nHINT:  Try."_qs),
              u"ERROR:  no\nHINT:  Try."_qs);
    EXPECT_EQ(DXError::withoutQuotedLine(u"ERROR:  LINE 1: a\nLINE 2: b"_qs),
              u"ERROR:  LINE 1: a\nLINE 2: b"_qs);
}

} // namespace
