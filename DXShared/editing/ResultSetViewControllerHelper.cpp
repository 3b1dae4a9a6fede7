// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/ResultSetViewControllerHelper.h"

ResultSetViewControllerHelperDelegate::~ResultSetViewControllerHelperDelegate() = default;

ResultSetViewControllerHelper::ResultSetViewControllerHelper(
    const std::shared_ptr<const DabroDBC> &details)
    : m_details(details)
{ }

ResultSetViewControllerHelper::~ResultSetViewControllerHelper() = default;

QString ResultSetViewControllerHelper::stringValueForRowArray(const QList<DXValue> &row, int column,
                                                              AllowTruncate allowTruncate) const
{
    if (column < 0 || column >= row.size())
        return {};
    const DXValue &value = row[column];
    const bool truncates = allowTruncate == AllowTruncate::Yes;
    if (value.isBytes()) {
        const QByteArray bytes = value.toBytes();
        const QByteArrayView shown =
            truncates ? QByteArrayView(bytes).first(qMin(bytes.size(), TruncatedLength / 2))
                      : QByteArrayView(bytes);
        const QString text =
            QStringLiteral("\\x") + QString::fromLatin1(shown.toByteArray().toHex());
        return shown.size() < bytes.size() ? text + QChar(u'…') : text;
    }
    QString text = value.toText();
    if (!truncates || text.size() <= TruncatedLength)
        return text;
    // A surrogate pair is not torn.
    const qsizetype length =
        text[TruncatedLength - 1].isHighSurrogate() ? TruncatedLength - 1 : TruncatedLength;
    return text.first(length) + QChar(u'…');
}
