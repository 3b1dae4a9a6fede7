// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresAdvancedSettings.h"

#include "driver/connecting/PostgresSessionSettings.h"

namespace
{

bool isTimeZone(const QString &name)
{
    return name.compare(QLatin1String("timezone"), Qt::CaseInsensitive) == 0;
}

} // namespace

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
        const Row row{.name = rows[i].name.trimmed(), .value = rows[i].value.trimmed()};
        if (row.name.isEmpty() && row.value.isEmpty())
            continue;
        problem = {.row = i, .text = {}};
        if (m_rows.contains(row))
            parameters.insert(row.name, m_original.value(row.name));
        else if (row.name.isEmpty())
            problem.text = tr("The value \"%1\" lacks the name of its parameter.").arg(row.value);
        else if (row.value.isEmpty())
            problem.text = tr("\"%1\" lacks a value.").arg(row.name);
        else if (isTimeZone(row.name))
            problem.text = tr("The time zone is chosen above.");
        else if (parameters.contains(row.name.toLower()))
            problem.text = tr("\"%1\" is there twice.").arg(row.name);
        else if (!PostgresSessionSettings::add(row.name, row.value, parameters, &error))
            problem.text = error.description();
        if (!problem.text.isEmpty())
            return std::nullopt;
    }
    return parameters;
}
