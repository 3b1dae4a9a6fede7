// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DatabaseResultSet.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Reads a number as the user's locale writes it, digit by digit: QLocale's own conversions end in a
// double or in 64 bits.
class LocalNumberReader final
{
public:
    explicit LocalNumberReader(QStringView text)
        : m_rest(text.trimmed())
    { }

    std::optional<DXValue> read();

private:
    bool take(QStringView token);
    bool takeGroupSeparator();
    qsizetype takeDigits();
    bool takeWholePart();
    bool takeExponent();

    const QLocale m_locale;
    QStringView m_rest;
    // What was read, as DXDecimal wants it.
    QByteArray m_plain;
};

std::optional<DXValue> LocalNumberReader::read()
{
    if (take(m_locale.negativeSign()) || take(u"-") || take(u"\u2212"))
        m_plain += '-';
    else if (!take(m_locale.positiveSign()))
        take(u"+");

    const qsizetype sign = m_plain.size();
    if (!takeWholePart())
        return std::nullopt;
    if (take(m_locale.decimalPoint())) {
        m_plain += '.';
        takeDigits();
    }
    if (m_plain.size() == sign || m_plain.endsWith("-.") || m_plain == "." || !takeExponent()
        || !m_rest.isEmpty())
        return std::nullopt;

    bool isInteger = false;
    const qint64 integer = m_plain.toLongLong(&isInteger);
    if (isInteger)
        return DXValue(integer);
    const std::optional<DXDecimal> decimal = DXDecimal::fromString(m_plain);
    return decimal ? std::optional(DXValue(*decimal)) : std::nullopt;
}

bool LocalNumberReader::take(QStringView token)
{
    if (token.isEmpty() || !m_rest.startsWith(token))
        return false;
    m_rest = m_rest.sliced(token.size());
    return true;
}

// Keyboards have neither the narrow blank nor the curved apostrophe that some locales group with.
bool LocalNumberReader::takeGroupSeparator()
{
    const QString separator = m_locale.groupSeparator();
    if (take(separator))
        return true;
    if (separator == u"\u2019")
        return take(u"'");
    if (separator.size() != 1 || !separator.front().isSpace() || m_rest.isEmpty()
        || !m_rest.front().isSpace())
        return false;
    return take(m_rest.first(1));
}

qsizetype LocalNumberReader::takeDigits()
{
    const auto end = std::find_if_not(m_rest.begin(), m_rest.end(),
                                      [](QChar c) { return c.digitValue() >= 0 && c.isDigit(); });
    const qsizetype count = end - m_rest.begin();
    for (const QChar digit : m_rest.first(count))
        m_plain += static_cast<char>('0' + digit.digitValue());
    m_rest = m_rest.sliced(count);
    return count;
}

// Groups are of three digits, those before the last also of two, as in 12,34,567.
bool LocalNumberReader::takeWholePart()
{
    qsizetype count = takeDigits();
    bool isGrouped = false;
    while (count > 0 && count <= 3 && takeGroupSeparator()) {
        if (isGrouped && count == 1)
            return false;
        isGrouped = true;
        count = takeDigits();
    }
    return !isGrouped || count == 3;
}

bool LocalNumberReader::takeExponent()
{
    if (!take(u"e") && !take(u"E"))
        return true;
    m_plain += 'e';
    if (take(u"-"))
        m_plain += '-';
    else
        take(u"+");
    return takeDigits() > 0;
}

std::optional<bool> truthOf(const DXValue &value)
{
    if (value.isNull())
        return std::nullopt;
    if (value.isInteger())
        return value.toInteger() != 0;
    if (value.isDecimal())
        return !value.toDecimal().isZero();
    const QString text = value.toText();
    const auto first =
        std::find_if_not(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
    return first != text.end() && u"YyTt123456789"_s.contains(*first);
}

std::optional<DXValue> numberOf(const DXValue &value)
{
    return value.isText() ? LocalNumberReader(value.toText()).read() : value;
}

} // namespace

DatabaseResultSet::~DatabaseResultSet() = default;

QString DatabaseResultSet::columnNameForIndex(quint32 index) const
{
    return m_columnNames.value(index);
}

qsizetype DatabaseResultSet::indexOfColumn(const QString &name) const
{
    return m_columnNames.indexOf(name);
}

DXValue DatabaseResultSet::stringForColumn(const QString &name) const
{
    const qsizetype index = indexOfColumn(name);
    return index < 0 ? DXValue() : objectForColumnIndex(static_cast<quint32>(index));
}

std::optional<bool> DatabaseResultSet::boolForColumnIndex(quint32 index) const
{
    return truthOf(objectForColumnIndex(index));
}

std::optional<bool> DatabaseResultSet::boolForColumn(const QString &name) const
{
    return truthOf(stringForColumn(name));
}

std::optional<DXValue> DatabaseResultSet::numberForColumnIndex(quint32 index) const
{
    return numberOf(objectForColumnIndex(index));
}

std::optional<DXValue> DatabaseResultSet::numberForColumn(const QString &name) const
{
    return numberOf(stringForColumn(name));
}
