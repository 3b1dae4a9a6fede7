// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresAdvancedSettings.h"

#include "driver/connecting/PostgresConnectionParameters.h"
#include "driver/connecting/PostgresSessionSettings.h"

namespace
{

bool isTimeZone(const QString &name)
{
    return name.compare(QLatin1String("timezone"), Qt::CaseInsensitive) == 0;
}

using Settings = PostgresAdvancedSettings;

Settings::Row trimmed(const Settings::Row &row)
{
    return {.name = row.name.trimmed(), .value = row.value.trimmed()};
}

bool isEmpty(const Settings::Row &row)
{
    return row.name.isEmpty() && row.value.isEmpty();
}

} // namespace

// What is wrong with a row, whatever its parameter means.
QString Settings::problemOf(const Row &row, const QMap<QString, QString> &parametersBefore)
{
    if (row.name.isEmpty())
        return tr("The value \"%1\" lacks the name of its parameter.").arg(row.value);
    if (row.value.isEmpty())
        return tr("\"%1\" lacks a value.").arg(row.name);
    if (parametersBefore.contains(row.name.toLower()))
        return tr("\"%1\" is there twice.").arg(row.name);
    return {};
}

QList<Settings::Row> Settings::rowsOf(const QMap<QString, QString> &connectionParameters)
{
    QList<Row> rows;
    for (auto it = connectionParameters.begin(); it != connectionParameters.end(); ++it)
        rows.append({.name = it.key(), .value = it.value()});
    return rows;
}

std::optional<QMap<QString, QString>> Settings::connectionParameters(const QList<Row> &rows,
                                                                     Problem &problem)
{
    QMap<QString, QString> parameters;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Row row = trimmed(rows[i]);
        if (isEmpty(row))
            continue;
        DXError error;
        problem = {.row = i, .text = problemOf(row, parameters)};
        if (problem.text.isEmpty()
            && !PostgresConnectionParameters::add(row.name.toLower(), row.value, parameters,
                                                  &error))
            problem.text = error.description();
        if (!problem.text.isEmpty())
            return std::nullopt;
    }
    return parameters;
}

PostgresAdvancedSettings::PostgresAdvancedSettings(const QMap<QString, QString> &parameters)
    : m_original(parameters)
{
    for (auto entry = parameters.begin(); entry != parameters.end(); ++entry) {
        if (isTimeZone(entry.key()))
            m_timeZone = entry.value();
        else
            m_rows.append(
                {.name = entry.key(),
                 .value = PostgresSessionSettings::plainValue(entry.key(), entry.value())});
    }
}

std::optional<QMap<QString, QString>> PostgresAdvancedSettings::parameters(const QString &timeZone,
                                                                           const QList<Row> &rows,
                                                                           Problem &problem) const
{
    QMap<QString, QString> parameters;
    DXError error;
    const QString zone = timeZone.trimmed();
    if (!zone.isEmpty()
        && !PostgresSessionSettings::add(QStringLiteral("timezone"), zone, parameters, &error)) {
        problem = {.row = -1, .text = error.description()};
        return std::nullopt;
    }
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Row row = trimmed(rows[i]);
        if (isEmpty(row))
            continue;
        problem = {.row = i, .text = {}};
        if (m_rows.contains(row))
            parameters.insert(row.name, m_original.value(row.name));
        else if (isTimeZone(row.name) && !row.value.isEmpty())
            problem.text = tr("The time zone is chosen above.");
        else if (const QString wrong = problemOf(row, parameters); !wrong.isEmpty())
            problem.text = wrong;
        else if (!PostgresSessionSettings::add(row.name, row.value, parameters, &error))
            problem.text = error.description();
        if (!problem.text.isEmpty())
            return std::nullopt;
    }
    return parameters;
}
