// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXDecimal.h"

#include <algorithm>

namespace
{

// PostgreSQL's own bound is 131,072 digits before the point and 16,383 behind it.
constexpr qsizetype maximumDigits = 200'000;

struct Parts
{
    bool negative = false;
    QByteArray whole;
    QByteArray fraction;
};

bool takeDigits(QByteArrayView text, qsizetype &at, QByteArray &digits)
{
    const qsizetype start = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9')
        ++at;
    digits = text.sliced(start, at - start).toByteArray();
    return at > start;
}

std::optional<qsizetype> takeExponent(QByteArrayView text, qsizetype at)
{
    if (at == text.size())
        return 0;
    if (text[at] != 'e' && text[at] != 'E')
        return std::nullopt;
    bool ok = false;
    const int exponent = text.sliced(at + 1).toByteArray().toInt(&ok);
    if (!ok || exponent > maximumDigits || exponent < -maximumDigits)
        return std::nullopt;
    return exponent;
}

// Moves the decimal point by exponent places, to the right when positive.
void shiftPoint(Parts &parts, qsizetype exponent)
{
    if (exponent > 0) {
        const qsizetype moved = std::min(exponent, parts.fraction.size());
        parts.whole += parts.fraction.first(moved) + QByteArray(exponent - moved, '0');
        parts.fraction.remove(0, moved);
    } else if (exponent < 0) {
        const qsizetype moved = std::min(-exponent, parts.whole.size());
        parts.fraction.prepend(parts.whole.last(moved));
        parts.fraction.prepend(QByteArray(-exponent - moved, '0'));
        parts.whole.chop(moved);
    }
}

QByteArray canonical(const Parts &parts)
{
    qsizetype leadingZeros = 0;
    while (leadingZeros + 1 < parts.whole.size() && parts.whole[leadingZeros] == '0')
        ++leadingZeros;
    QByteArray text = parts.negative ? QByteArrayLiteral("-") : QByteArray();
    text += parts.whole.isEmpty() ? QByteArrayLiteral("0") : parts.whole.sliced(leadingZeros);
    if (!parts.fraction.isEmpty())
        text += '.' + parts.fraction;
    return text;
}

Parts split(QByteArrayView text)
{
    Parts parts;
    parts.negative = text.startsWith('-');
    if (parts.negative)
        text = text.sliced(1);
    const qsizetype point = text.indexOf('.');
    parts.whole = (point < 0 ? text : text.first(point)).toByteArray();
    if (point >= 0)
        parts.fraction = text.sliced(point + 1).toByteArray();
    while (parts.fraction.endsWith('0'))
        parts.fraction.chop(1);
    return parts;
}

std::weak_ordering compareMagnitudes(const Parts &left, const Parts &right)
{
    if (left.whole.size() != right.whole.size())
        return left.whole.size() <=> right.whole.size();
    const int whole = left.whole.compare(right.whole);
    return (whole != 0 ? whole : left.fraction.compare(right.fraction)) <=> 0;
}

} // namespace

DXDecimal::DXDecimal()
    : m_text(QByteArrayLiteral("0"))
{ }

DXDecimal::DXDecimal(qint64 value)
    : m_text(QByteArray::number(value))
{ }

DXDecimal::DXDecimal(const QByteArray &canonical)
    : m_text(canonical)
{ }

std::optional<DXDecimal> DXDecimal::fromString(QByteArrayView text)
{
    text = text.trimmed();
    Parts parts;
    qsizetype at = 0;
    if (!text.isEmpty() && (text[0] == '-' || text[0] == '+'))
        parts.negative = text[at++] == '-';

    const QByteArray word = text.sliced(at).toByteArray().toLower();
    if (word == "nan" && at == 0)
        return DXDecimal(QByteArrayLiteral("NaN"));
    if (word == "infinity" || word == "inf")
        return DXDecimal(parts.negative ? QByteArrayLiteral("-Infinity")
                                        : QByteArrayLiteral("Infinity"));

    const bool hasWhole = takeDigits(text, at, parts.whole);
    bool hasFraction = false;
    if (at < text.size() && text[at] == '.') {
        ++at;
        hasFraction = takeDigits(text, at, parts.fraction);
    }
    const std::optional<qsizetype> exponent = takeExponent(text, at);
    if ((!hasWhole && !hasFraction) || !exponent)
        return std::nullopt;
    shiftPoint(parts, *exponent);
    return DXDecimal(canonical(parts));
}

QString DXDecimal::toString() const
{
    return QString::fromLatin1(m_text);
}

double DXDecimal::toDouble() const
{
    return m_text.toDouble();
}

bool DXDecimal::isNaN() const
{
    return m_text == "NaN";
}

bool DXDecimal::isInfinite() const
{
    return m_text.endsWith("Infinity");
}

bool DXDecimal::isZero() const
{
    return std::all_of(m_text.begin(), m_text.end(),
                       [](char c) { return c == '0' || c == '.' || c == '-'; });
}

std::weak_ordering operator<=>(const DXDecimal &left, const DXDecimal &right)
{
    const auto rank = [](const DXDecimal &number) {
        if (number.isNaN())
            return 4;
        if (number.isInfinite())
            return number.m_text.startsWith('-') ? 0 : 3;
        return number.isZero() ? 2 : (number.m_text.startsWith('-') ? 1 : 2);
    };
    const int leftRank = rank(left);
    if (leftRank != rank(right) || (leftRank != 1 && leftRank != 2))
        return leftRank <=> rank(right);
    const Parts leftParts = split(left.m_text);
    const Parts rightParts = split(right.m_text);
    return leftRank == 1 ? compareMagnitudes(rightParts, leftParts)
                         : compareMagnitudes(leftParts, rightParts);
}

bool operator==(const DXDecimal &left, const DXDecimal &right)
{
    return (left <=> right) == 0;
}
