// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultText.h"

#include "core/DXFieldText.h"

#include <QStringList>

#include <utility>

namespace
{

using DXResultText::Format;

QByteArray csvField(const QString &text)
{
    QByteArray field;
    if (!text.isNull())
        DXFieldText::appendCsv(field, text.toUtf8());
    return field;
}

QByteArray tsvField(const QString &text)
{
    QByteArray field;
    if (text.isNull())
        return QByteArrayLiteral("\\N");
    DXFieldText::appendTsv(field, text.toUtf8());
    return field;
}

QByteArray jsonString(const QString &text)
{
    QByteArray field;
    DXFieldText::appendJson(field, text.toUtf8());
    return field;
}

QByteArray jsonField(const DXValue &value)
{
    if (value.isNull())
        return QByteArrayLiteral("null");
    const QString text = DXResultText::textOf(value);
    // NaN and infinities are no numbers to JSON.
    return value.isNumber() && text.back().isDigit() ? text.toLatin1() : jsonString(text);
}

/// Writes the rows of an area, one after the other.
class Rows final
{
public:
    Rows(const DXQueryResultDetails &details, Format format, const DXResultArea &area,
         const DXResultText::Dialect &dialect)
        : m_details(details)
        , m_format(format)
        , m_columns(area.columns)
        , m_dialect(dialect)
        , m_names(details.columnNames())
    { }

    QByteArray before() const
    {
        if (m_format == Format::Json)
            return QByteArrayLiteral("[");
        if (m_format != Format::Csv)
            return {};
        QByteArrayList fields;
        for (const int column : m_columns)
            fields.append(csvField(m_names[column]));
        return fields.join(',') + '\n';
    }

    QByteArray row(qsizetype row, const QList<int> &columns)
    {
        const QByteArrayList fields = fieldsOf(row, columns);
        const bool isFirst = std::exchange(m_isFirst, false);
        switch (m_format) {
        case Format::Tsv:
            return fields.join('\t') + '\n';
        case Format::Csv:
        case Format::CsvWithoutNames:
            return fields.join(',') + '\n';
        case Format::Json:
            return (isFirst ? "\n  {" : ",\n  {") + fields.join(", ") + '}';
        case Format::Insert:
            return insertBegin(columns) + fields.join(", ") + ");\n";
        }
        return {};
    }

    QByteArray after() const
    {
        return m_format == Format::Json ? QByteArrayLiteral("\n]\n") : QByteArray();
    }

private:
    // Where columns have no names of their own, each has its place.
    QByteArrayList fieldsOf(qsizetype row, const QList<int> &columns) const
    {
        const bool hasPlaces = m_format != Format::Json && m_format != Format::Insert;
        QByteArrayList fields;
        auto next = columns.begin();
        for (const int column : hasPlaces ? m_columns : columns) {
            if (next != columns.end() && *next == column) {
                fields.append(field(column, m_details.value(row, quint32(column))));
                ++next;
            } else {
                fields.append(QByteArray());
            }
        }
        return fields;
    }

    QByteArray field(int column, const DXValue &value) const
    {
        switch (m_format) {
        case Format::Tsv:
            return tsvField(DXResultText::textOf(value));
        case Format::Csv:
        case Format::CsvWithoutNames:
            return csvField(DXResultText::textOf(value));
        case Format::Json:
            return jsonString(m_names[column]) + ": " + jsonField(value);
        case Format::Insert:
            return m_dialect.escapeValue(value).toUtf8();
        }
        return {};
    }

    QByteArray insertBegin(const QList<int> &columns) const
    {
        QStringList names;
        for (const int column : columns)
            names.append(m_dialect.escapeName(m_names[column]));
        return QStringLiteral("INSERT INTO %1 (%2) VALUES (")
            .arg(m_dialect.tableName, names.join(QLatin1String(", ")))
            .toUtf8();
    }

    const DXQueryResultDetails &m_details;
    const Format m_format;
    const QList<int> m_columns;
    const DXResultText::Dialect &m_dialect;
    const QStringList m_names;
    bool m_isFirst = true;
};

} // namespace

QString DXResultText::textOf(const DXValue &value)
{
    if (!value.isBytes())
        return value.toText();
    const QByteArray bytes = value.toBytes();
    return QString::fromLatin1(bytes.startsWith("\\x") ? bytes : "\\x" + bytes.toHex());
}

bool DXResultText::write(const DXQueryResultDetails &details, Format format,
                         const DXResultArea &area, const Dialect &dialect,
                         const std::function<bool(const QByteArray &text)> &piece)
{
    Rows rows(details, format, area, dialect);
    if (!piece(rows.before()))
        return false;
    for (const DXResultArea::Block &block : area.blocks) {
        for (qsizetype number = 0; number < block.rowCount; ++number) {
            if (!piece(rows.row(block.firstRow + number, block.columns)))
                return false;
        }
    }
    return piece(rows.after());
}

QString DXResultText::text(const DXQueryResultDetails &details, Format format,
                           const DXResultArea &area, const Dialect &dialect)
{
    QByteArray text;
    write(details, format, area, dialect, [&text](const QByteArray &piece) {
        text += piece;
        return true;
    });
    return QString::fromUtf8(text);
}
