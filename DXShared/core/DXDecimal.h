// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QByteArray>
#include <QString>

#include <compare>
#include <optional>

/// An exact decimal number of any length, as PostgreSQL's numeric type holds it (manual, "Numeric
/// Types"): every digit is kept, trailing zeros of the fraction included, and NaN, Infinity and
/// -Infinity are values. An immutable value; may cross threads. [any]
class DXSHARED_EXPORT DXDecimal final
{
public:
    /// Zero.
    DXDecimal();
    explicit DXDecimal(qint64 value);

    /// Reads a decimal number: optional sign, digits with at most one point, optional exponent; or
    /// NaN, Infinity, inf with optional sign, in any case. Blanks around it are allowed. Nothing
    /// when text is not such a number in whole. An exponent is written out, up to 200,000 digits.
    static std::optional<DXDecimal> fromString(QByteArrayView text);

    /// The number written out with all its digits, without an exponent.
    QString toString() const;
    /// The nearest double; infinite beyond its reach.
    double toDouble() const;

    bool isNaN() const;
    bool isInfinite() const;
    /// True for 0, 0.00 and -0.
    bool isZero() const;

    /// Orders by value: 1.0 and 1.00 are equivalent. As in PostgreSQL, NaN equals itself and is
    /// greater than every other number.
    friend DXSHARED_EXPORT std::weak_ordering operator<=>(const DXDecimal &, const DXDecimal &);
    friend DXSHARED_EXPORT bool operator==(const DXDecimal &, const DXDecimal &);

private:
    explicit DXDecimal(const QByteArray &canonical);

    // An optional '-', digits without leading zeros (at least one before the point), then the
    // fraction; or "NaN", "Infinity", "-Infinity". What the server sends is already in this form.
    QByteArray m_text;
};
