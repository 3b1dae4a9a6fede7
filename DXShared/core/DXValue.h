// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXDecimal.h"
#include "core/DXGlobal.h"

#include <QByteArray>
#include <QString>

#include <variant>

/// One cell as the client works with it: the null marker, a 64-bit integer, an exact decimal, a
/// byte buffer or text. A value that may cross threads. [any]
class DXSHARED_EXPORT DXValue final
{
public:
    /// The null marker: SQL NULL.
    DXValue() = default;
    DXValue(qint64 number)
        : m_value(number)
    { }
    DXValue(const DXDecimal &decimal)
        : m_value(decimal)
    { }
    DXValue(const QByteArray &bytes)
        : m_value(bytes)
    { }
    /// Text; a null QString makes the null marker, an empty one empty text.
    DXValue(const QString &text);

    bool isNull() const { return std::holds_alternative<std::monostate>(m_value); }
    bool isText() const { return std::holds_alternative<QString>(m_value); }
    bool isBytes() const { return std::holds_alternative<QByteArray>(m_value); }
    bool isInteger() const { return std::holds_alternative<qint64>(m_value); }
    bool isDecimal() const { return std::holds_alternative<DXDecimal>(m_value); }
    /// True for integers and decimals.
    bool isNumber() const { return isInteger() || isDecimal(); }

    /// The value written as text: numbers in their plain form with all digits and no grouping,
    /// bytes decoded as UTF-8; a null QString for the null marker.
    QString toText() const;
    /// The integer; for other kinds the leading integer of the text form, 0 when there is none.
    qint64 toInteger() const;
    /// The bytes of a byte buffer; the UTF-8 bytes of the text form for other kinds.
    QByteArray toBytes() const;
    /// The decimal; for other kinds the text form read as one, or zero.
    DXDecimal toDecimal() const;

    /// Same kind and same content.
    friend bool operator==(const DXValue &left, const DXValue &right) = default;

    /// The leading integer of text after blanks and a sign, clamped to 64 bits; 0 when there is
    /// none.
    static qint64 leadingInteger(QByteArrayView text);

private:
    std::variant<std::monostate, qint64, DXDecimal, QByteArray, QString> m_value;
};
