// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXDecimal.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace
{

std::string written(const char *text)
{
    const auto number = DXDecimal::fromString(text);
    return number ? number->toString().toStdString() : "(none)";
}

TEST(DXDecimal, keepsEveryDigitAndRejectsWhatIsNoNumber)
{
    struct Case
    {
        const char *text;
        const char *expected;
    };
    for (const auto &[text, expected] : std::initializer_list<Case>{
             {"1234567890123456789012345.67890123456789012345",
              "1234567890123456789012345.67890123456789012345"},
             {"1.50", "1.50"},
             {"-0.00", "-0.00"},
             {"007", "7"},
             {" +12. ", "12"},
             {".5", "0.5"},
             {"-.5e2", "-50"},
             {"1.25e1", "12.5"},
             {"1.25E-3", "0.00125"},
             {"12e-5", "0.00012"},
             {"nan", "NaN"},
             {"-infinity", "-Infinity"},
             {"inf", "Infinity"},
             {"", "(none)"},
             {".", "(none)"},
             {"-", "(none)"},
             {"1 2", "(none)"},
             {"1e", "(none)"},
             {"1e9999999", "(none)"},
             {"-nan", "(none)"},
             {"0x10", "(none)"},
             {"1,000", "(none)"},
         })
        EXPECT_EQ(written(text), expected) << text;
}

TEST(DXDecimal, ordersByValue)
{
    const char *const ascending[] = {"-Infinity", "-100.5",     "-100.49", "-1", "-0.001",
                                     "0",         "0.00100001", "0.01",    "9",  "10.0001",
                                     "10.01",     "Infinity",   "NaN"};
    for (std::size_t l = 0; l < std::size(ascending); ++l) {
        for (std::size_t r = 0; r < std::size(ascending); ++r) {
            const auto left = *DXDecimal::fromString(ascending[l]);
            const auto right = *DXDecimal::fromString(ascending[r]);
            EXPECT_EQ(left <=> right, l <=> r) << ascending[l] << " " << ascending[r];
        }
    }
    EXPECT_EQ(*DXDecimal::fromString("1.0"), *DXDecimal::fromString("1.000"));
    EXPECT_EQ(*DXDecimal::fromString("-0"), DXDecimal());
}

} // namespace
