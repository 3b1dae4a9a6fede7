// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXTextRange.h"

#include <QSharedDataPointer>
#include <QString>
#include <QVariantMap>

class DXErrorData;

/// What went wrong: a domain, a code, a text for the user and further details by key.
///
/// A value that is shared until changed, so it may be copied and handed across threads freely. An
/// error made without arguments is empty: it means that nothing failed. Operations take a `DXError
/// *error` slot that may be null, fill it through report(), and never clear what is in it. [any]
class DXSHARED_EXPORT DXError final
{
public:
    DXError();
    DXError(const QString &domain, qint64 code, const QString &description,
            const QVariantMap &details = {});
    DXError(const DXError &);
    DXError(DXError &&) noexcept;
    DXError &operator=(const DXError &);
    DXError &operator=(DXError &&) noexcept;
    ~DXError();

    /// True for the error that means success.
    bool isEmpty() const;
    /// True when something failed.
    explicit operator bool() const { return !isEmpty(); }

    /// The kind of operation that failed, such as "postgres.databaseTree.loadTables"; empty for
    /// errors that carry the server's own message.
    QString domain() const;
    qint64 code() const;
    /// The text for the user, as it came from where the failure happened.
    QString description() const;
    /// Everything else that is known, by key; keys of our own begin with DXProductPrefix.
    QVariantMap details() const;

    /// The same error in another domain, with the same code, description and details.
    DXError withDomain(const QString &domain) const;
    /// The same error with another text for the user.
    DXError withDescription(const QString &description) const;
    /// The same error with value under key in its details, beside what was there.
    DXError withDetail(const QString &key, const QVariant &value) const;

    /// A server's message without the line of the query that some client libraries quote in it,
    /// with a caret below (libpq does, PQresultErrorMessage): for where the place is marked better.
    static QString withoutQuotedLine(const QString &message);

    /// Puts error into slot; does nothing when slot is null. The one way in which slots are filled.
    static void report(DXError *slot, const DXError &error);

    /// The details key under which a list of DXTextRange marks the failing text of an editor.
    static QString queryErrorRangesKey();
    /// The ranges under queryErrorRangesKey(), or nothing.
    QList<DXTextRange> queryErrorRanges() const;

    friend DXSHARED_EXPORT bool operator==(const DXError &left, const DXError &right);

private:
    QSharedDataPointer<DXErrorData> d;
};
