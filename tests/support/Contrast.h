// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// The contrast of two colours as the Web Content Accessibility Guidelines define it, 1 to 21.
inline double contrast(const QColor &one, const QColor &other)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](float part) {
            return part <= 0.03928F ? part / 12.92F : std::pow((part + 0.055F) / 1.055F, 2.4F);
        };
        return 0.2126F * linear(color.redF()) + 0.7152F * linear(color.greenF())
               + 0.0722F * linear(color.blueF()) + 0.05F;
    };
    const float first = luminance(one);
    const float second = luminance(other);
    return double(std::max(first, second) / std::min(first, second));
}
