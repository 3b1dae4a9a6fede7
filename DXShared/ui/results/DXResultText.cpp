// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultText.h"

#include "core/DXFieldText.h"

#include <QStringList>

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
    Rows(const DXQueryResultDetails &details, Format format, const DXResultText::Area &area,
         const DXResultText::Dialect &dialect)
        : m_details(details)
        , m_format(format)
        , m_area(area)
        , m_dialect(dialect)
        , m_names(details.columnNames().mid(area.firstColumn, area.columnCount))
    { }

    QByteArray before() const
    {
        if (m_format == Format::Json)
            return QByteArrayLiteral("[");
        if (m_format != Format::Csv)
            return {};
        QByteArrayList fields;
        for (const QString &name : m_names)
            fields.append(csvField(name));
        return fields.join(',') + '\n';
    }

    QByteArray row(qsizetype number) const
    {
        QByteArrayList fields;
        for (int column = 0; column < m_area.columnCount; ++column)
            fields.append(field(column, m_details.value(m_area.firstRow + number,
                                                        quint32(m_area.firstColumn + column))));
        switch (m_format) {
        case Format::Tsv:
            return fields.join('\t') + '\n';
        case Format::Csv:
            return fields.join(',') + '\n';
        case Format::Json:
            return (number > 0 ? ",\n  {" : "\n  {") + fields.join(", ") + '}';
        case Format::Insert:
            return insertBegin() + fields.join(", ") + ");\n";
        }
        return {};
    }

    QByteArray after() const
    {
        return m_format == Format::Json ? QByteArrayLiteral("\n]\n") : QByteArray();
    }

private:
    QByteArray field(int column, const DXValue &value) const
    {
        switch (m_format) {
        case Format::Tsv:
            return tsvField(DXResultText::textOf(value));
        case Format::Csv:
            return csvField(DXResultText::textOf(value));
        case Format::Json:
            return jsonString(m_names[column]) + ": " + jsonField(value);
        case Format::Insert:
            return m_dialect.escapeValue(value).toUtf8();
        }
        return {};
    }

    QByteArray insertBegin() const
    {
        QStringList names;
        for (const QString &name : m_names)
            names.append(m_dialect.escapeName(name));
        return QStringLiteral("INSERT INTO %1 (%2) VALUES (")
            .arg(m_dialect.tableName, names.join(QLatin1String(", ")))
            .toUtf8();
    }

    const DXQueryResultDetails &m_details;
    const Format m_format;
    const DXResultText::Area m_area;
    const DXResultText::Dialect &m_dialect;
    const QStringList m_names;
};

} // namespace

QString DXResultText::textOf(const DXValue &value)
{
    if (!value.isBytes())
        return value.toText();
    const QByteArray bytes = value.toBytes();
    return QString::fromLatin1(bytes.startsWith("\\x") ? bytes : "\\x" + bytes.toHex());
}

bool DXResultText::write(const DXQueryResultDetails &details, Format format, const Area &area,
                         const Dialect &dialect,
                         const std::function<bool(const QByteArray &text)> &piece)
{
    const Rows rows(details, format, area, dialect);
    if (!piece(rows.before()))
        return false;
    for (qsizetype number = 0; number < area.rowCount; ++number) {
        if (!piece(rows.row(number)))
            return false;
    }
    return piece(rows.after());
}

QString DXResultText::text(const DXQueryResultDetails &details, Format format, const Area &area,
                           const Dialect &dialect)
{
    QByteArray text;
    write(details, format, area, dialect, [&text](const QByteArray &piece) {
        text += piece;
        return true;
    });
    return QString::fromUtf8(text);
}
