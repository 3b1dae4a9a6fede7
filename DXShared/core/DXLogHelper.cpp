// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXLogHelper.h"

#include "core/DXObserverList.h"

#include <QLoggingCategory>

#include <utility>

Q_LOGGING_CATEGORY(dabroLog, "org.dabro", QtInfoMsg)

namespace
{

QString errorText(const DXError &error, const QVariantMap &details)
{
    QString text;
    if (!error.domain().isEmpty())
        text += error.domain() + QLatin1String(": ");
    text += error.description();
    for (auto detail = details.begin(); detail != details.end(); ++detail)
        text += u'\n' + detail.key() + QLatin1String(": ") + detail.value().toString();
    return text;
}

} // namespace

struct DXLogHelper::Observers
{
    DXObserverList<const DXError &, const QVariantMap &> errors;
    DXObserverList<const QString &> lines;
};

DXLogHelper::DXLogHelper()
    : d(std::make_unique<Observers>())
{ }

DXLogHelper::~DXLogHelper() = default;

DXLogHelper &DXLogHelper::sharedInstance()
{
    static DXLogHelper instance;
    return instance;
}

void DXLogHelper::logError(const DXError &error, const QVariantMap &details)
{
    qCWarning(dabroLog).noquote() << errorText(error, details);
    d->errors.notify(error, details);
}

void DXLogHelper::logLine(const QString &line)
{
    qCInfo(dabroLog).noquote() << line;
    d->lines.notify(line);
}

std::shared_ptr<void> DXLogHelper::observeErrors(ErrorObserver observer)
{
    return d->errors.add(std::move(observer));
}

std::shared_ptr<void> DXLogHelper::observeLines(std::function<void(const QString &line)> observer)
{
    return d->lines.add(std::move(observer));
}

void DXLog(const QString &line)
{
    DXLogHelper::sharedInstance().logLine(line);
}
