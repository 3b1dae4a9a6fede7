// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXError.h"

#include <QSharedData>

class DXErrorData : public QSharedData
{
public:
    QString domain;
    qint64 code = 0;
    QString description;
    QVariantMap details;
};

DXError::DXError() = default;

DXError::DXError(const QString &domain, qint64 code, const QString &description,
                 const QVariantMap &details)
    : d(new DXErrorData)
{
    d->domain = domain;
    d->code = code;
    d->description = description;
    d->details = details;
}

DXError::DXError(const DXError &) = default;
DXError::DXError(DXError &&) noexcept = default;
DXError &DXError::operator=(const DXError &) = default;
DXError &DXError::operator=(DXError &&) noexcept = default;
DXError::~DXError() = default;

bool DXError::isEmpty() const
{
    return !d;
}

QString DXError::domain() const
{
    return d ? d->domain : QString();
}

qint64 DXError::code() const
{
    return d ? d->code : 0;
}

QString DXError::description() const
{
    return d ? d->description : QString();
}

QVariantMap DXError::details() const
{
    return d ? d->details : QVariantMap();
}

DXError DXError::withDomain(const QString &domain) const
{
    return {domain, code(), description(), details()};
}

DXError DXError::withDescription(const QString &description) const
{
    return {domain(), code(), description, details()};
}

DXError DXError::withDetail(const QString &key, const QVariant &value) const
{
    QVariantMap extended = details();
    extended.insert(key, value);
    return {domain(), code(), description(), extended};
}

QString DXError::withoutQuotedLine(const QString &message)
{
    QStringList lines = message.split(u'\n');
    for (qsizetype index = 0; index + 1 < lines.size(); ++index) {
        if (lines[index].startsWith(QLatin1String("LINE "))
            && lines[index + 1].trimmed().startsWith(u'^')) {
            lines.remove(index, 2);
            break;
        }
    }
    return lines.join(u'\n');
}

void DXError::report(DXError *slot, const DXError &error)
{
    if (slot)
        *slot = error;
}

QString DXError::queryErrorRangesKey()
{
    return DXProductName(u"queryErrorRanges");
}

QList<DXTextRange> DXError::queryErrorRanges() const
{
    return details().value(queryErrorRangesKey()).value<QList<DXTextRange>>();
}

bool operator==(const DXError &left, const DXError &right)
{
    return left.isEmpty() == right.isEmpty() && left.domain() == right.domain()
           && left.code() == right.code() && left.description() == right.description()
           && left.details() == right.details();
}
