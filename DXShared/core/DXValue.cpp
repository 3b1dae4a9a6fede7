// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXValue.h"

#include <limits>

DXValue::DXValue(const QString &text)
{
    if (!text.isNull())
        m_value = text;
}

QString DXValue::toText() const
{
    if (const auto *text = std::get_if<QString>(&m_value))
        return *text;
    if (const auto *number = std::get_if<qint64>(&m_value))
        return QString::number(*number);
    if (const auto *decimal = std::get_if<DXDecimal>(&m_value))
        return decimal->toString();
    if (const auto *bytes = std::get_if<QByteArray>(&m_value))
        return bytes->isNull() ? QStringLiteral("") : QString::fromUtf8(*bytes);
    return {};
}

qint64 DXValue::toInteger() const
{
    if (const auto *number = std::get_if<qint64>(&m_value))
        return *number;
    return leadingInteger(toBytes());
}

QByteArray DXValue::toBytes() const
{
    if (const auto *bytes = std::get_if<QByteArray>(&m_value))
        return *bytes;
    return toText().toUtf8();
}

DXDecimal DXValue::toDecimal() const
{
    if (const auto *decimal = std::get_if<DXDecimal>(&m_value))
        return *decimal;
    if (const auto *number = std::get_if<qint64>(&m_value))
        return DXDecimal(*number);
    return DXDecimal::fromString(toBytes()).value_or(DXDecimal());
}

qint64 DXValue::leadingInteger(QByteArrayView text)
{
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    qsizetype at = 0;
    while (at < text.size() && (text[at] == ' ' || (text[at] >= '\t' && text[at] <= '\r')))
        ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        ++at;
    qint64 value = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        const int digit = text[at] - '0';
        // Counted downwards: the least integer has no positive counterpart.
        if (value < (least + digit) / 10)
            return negative ? least : most;
        value = value * 10 - digit;
    }
    if (negative)
        return value;
    return value == least ? most : -value;
}
