// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresBulkInsertBuilder.h"

#include "driver/PostgresDatabaseClient.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <utility>

namespace
{

constexpr std::array numericTypes{
    QLatin1String("integer"), QLatin1String("smallint"),         QLatin1String("bigint"),
    QLatin1String("decimal"), QLatin1String("numeric"),          QLatin1String("real"),
    QLatin1String("serial"),  QLatin1String("double precision"),
};

bool isNumericType(const QString &type)
{
    return std::any_of(numericTypes.begin(), numericTypes.end(),
                       [&](QLatin1String numeric) { return type.startsWith(numeric); });
}

bool isNullWord(const QString &text)
{
    return text.size() == 4 && text.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0;
}

// Doubles the apostrophes in what follows start.
void doubleApostrophes(QByteArray &bytes, qsizetype start)
{
    const qsizetype end = bytes.size();
    const qsizetype apostrophes = std::count(bytes.cbegin() + start, bytes.cend(), '\'');
    if (apostrophes == 0)
        return;
    bytes.resize(end + apostrophes);
    char *to = bytes.end();
    for (const char *from = bytes.cbegin() + end; from != to;) {
        *--to = *--from;
        if (*from == '\'')
            *--to = '\'';
    }
}

// Removes thousands separators and currency signs from what follows start.
void removeNumberMarks(QByteArray &bytes, qsizetype start)
{
    char *const end = std::remove_if(bytes.begin() + start, bytes.end(),
                                     [](char c) { return c == ',' || c == '$'; });
    bytes.truncate(end - bytes.cbegin());
}

} // namespace

PostgresBulkInsertBuilder::PostgresBulkInsertBuilder(const QString &tablePath,
                                                     const QStringList &columnNames,
                                                     const QStringList &columnTypes)
    : m_columnNames(columnNames)
    , m_encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless)
{
    QStringList names;
    for (const QString &name : columnNames)
        names += PostgresDatabaseClient::escapeTableNameIfRequired(name);
    for (const QString &type : columnTypes)
        m_columnIsNumeric.push_back(isNumericType(type));
    m_statement =
        QStringLiteral("INSERT INTO %1 (%2) VALUES\r\n").arg(tablePath, names.join(u',')).toUtf8();
    m_headSize = m_statement.size();
}

bool PostgresBulkInsertBuilder::addRow(const QList<DXValue> &row, DXError *error)
{
    ++m_rows;
    if (row.size() != m_columnNames.size()) {
        reportBadRow(QStringLiteral("it has %1 values for %2 columns. Give it one value a column.")
                         .arg(row.size())
                         .arg(m_columnNames.size()),
                     error);
        return false;
    }
    if (m_pendingRows == 0)
        m_statement.truncate(m_headSize);
    else
        m_statement += ",\r\n";
    ++m_pendingRows;
    char separator = '(';
    for (qsizetype column = 0; column < row.size(); ++column) {
        m_statement += std::exchange(separator, ',');
        if (!appendCell(row[column], m_columnIsNumeric[static_cast<size_t>(column)])) {
            reportBadRow(QStringLiteral("the text for column \"%1\" holds a NUL character "
                                        "(U+0000), which PostgreSQL cannot store. Remove it.")
                             .arg(m_columnNames[column]),
                         error);
            return false;
        }
    }
    m_statement += ')';
    return true;
}

const QByteArray &PostgresBulkInsertBuilder::takeStatement()
{
    m_pendingRows = 0;
    return m_statement += ';';
}

bool PostgresBulkInsertBuilder::appendCell(const DXValue &cell, bool isNumeric)
{
    if (cell.isText())
        return isNumeric ? appendBare(cell.toText()) : appendQuoted(cell.toText());
    if (cell.isNull())
        m_statement += "NULL";
    else if (cell.isInteger())
        appendInteger(cell.toInteger());
    else if (cell.isBytes())
        appendBytes(cell.toBytes());
    else
        appendUtf8(PostgresDatabaseClient::escapeValue(cell));
    return true;
}

bool PostgresBulkInsertBuilder::appendQuoted(const QString &text)
{
    if (isNullWord(text)) {
        m_statement += "NULL";
        return true;
    }
    m_statement += '\'';
    const qsizetype start = m_statement.size();
    if (!appendUtf8(text))
        return false;
    doubleApostrophes(m_statement, start);
    m_statement += '\'';
    return true;
}

bool PostgresBulkInsertBuilder::appendBare(const QString &text)
{
    const qsizetype start = m_statement.size();
    if (!appendUtf8(text))
        return false;
    removeNumberMarks(m_statement, start);
    return true;
}

void PostgresBulkInsertBuilder::appendInteger(qint64 number)
{
    std::array<char, std::numeric_limits<qint64>::digits10 + 2> digits;
    const auto result = std::to_chars(digits.begin(), digits.end(), number);
    m_statement.append(digits.data(), result.ptr - digits.data());
}

void PostgresBulkInsertBuilder::appendBytes(const QByteArray &bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    m_statement += "encode('";
    const qsizetype start = m_statement.size();
    m_statement.resize(start + 2 * bytes.size());
    char *to = m_statement.data() + start;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        *to++ = digits[byte >> 4U];
        *to++ = digits[byte & 15U];
    }
    m_statement += "','hex')";
}

bool PostgresBulkInsertBuilder::appendUtf8(QStringView text)
{
    const qsizetype start = m_statement.size();
    m_statement.resize(start + m_encoder.requiredSpace(text.size()));
    const char *const end = m_encoder.appendToBuffer(m_statement.data() + start, text);
    m_statement.truncate(end - m_statement.cbegin());
    return !QByteArrayView(m_statement).sliced(start).contains('\0');
}

void PostgresBulkInsertBuilder::reportBadRow(const QString &reason, DXError *error) const
{
    DXError::report(error,
                    {QStringLiteral(""), 0,
                     QStringLiteral("Row %1 cannot be inserted: %2").arg(m_rows).arg(reason)});
}
