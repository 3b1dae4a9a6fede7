// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliStatementInput.h"

#include "client/DabroDBC.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLTokenizer.h"

#include <QFile>
#include <QStringDecoder>

#include <cstdio>

std::optional<QString> CliStatementInput::read(const QString &file, QString &error)
{
    const bool isStandardInput = file == QLatin1String("-");
    const QString name = isStandardInput ? QStringLiteral("Standard input") : file;
    QFile source(file);
    const bool isOpen = isStandardInput ? source.open(stdin, QIODevice::ReadOnly)
                                        : source.open(QIODevice::ReadOnly);
    const QByteArray bytes = isOpen ? source.readAll() : QByteArray();
    if (source.error() != QFileDevice::NoError) {
        error = QStringLiteral("%1 cannot be read: %2.").arg(name, source.errorString());
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    if (decoder.hasError() || text.contains(QChar::Null)) {
        error = QStringLiteral("%1 is not text in UTF-8: convert it, for instance with iconv.")
                    .arg(name);
        return std::nullopt;
    }
    return text;
}

bool CliStatementInput::isComplete(const QString &text, const DabroDBC &details)
{
    // A word put behind the text begins a piece of its own only where a statement has ended.
    const QString probe = text + QStringLiteral("\nx");
    const QList<DXQueryDetails> pieces = details.createQuerySplitter()->split(probe);
    const DXQueryDetails &last = pieces.constLast();
    if (last.queryRange.location == 0)
        return false;
    SQLTokenizer tokenizer(*details.createPreParserOptions(), last.targetQuery, {});
    while (const auto token = tokenizer.next()) {
        if (!token->isBlankOrComment())
            return last.queryRange.location + token->range.location == probe.size() - 1;
    }
    return false;
}
