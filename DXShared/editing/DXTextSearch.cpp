// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXTextSearch.h"

#include <QCoreApplication>

namespace
{

using Option = QRegularExpression::PatternOption;

QRegularExpression expressionOf(const DXTextSearch::Query &query)
{
    QString pattern =
        query.isRegularExpression ? query.wanted : QRegularExpression::escape(query.wanted);
    // Not \b, which finds no word that ends with a sign.
    if (query.wholeWords)
        pattern = u"(?<!\\w)(?:"_qs + pattern + u")(?!\\w)"_qs;
    QRegularExpression::PatternOptions options =
        Option::MultilineOption | Option::UseUnicodePropertiesOption;
    options.setFlag(Option::CaseInsensitiveOption, !query.matchesCase);
    return QRegularExpression(pattern, options);
}

} // namespace

DXTextSearch::DXTextSearch(const Query &query)
    : m_isExpression(query.isRegularExpression)
    , m_expression(expressionOf(query))
{
    if (!m_expression.isValid())
        m_error = QCoreApplication::translate("DXTextSearch", "%1 (at character %2)")
                      .arg(m_expression.errorString())
                      .arg(std::max<qsizetype>(m_expression.patternErrorOffset(), 0) + 1);
}

QList<DXTextRange> DXTextSearch::find(const QString &text, const DXTextRange &range,
                                      const std::atomic<bool> &isCancelled) const
{
    QList<DXTextRange> matches;
    if (!m_expression.isValid() || m_expression.pattern().isEmpty())
        return matches;
    qsizetype from = range.location;
    while (from <= range.end() && matches.size() < maximum && !isCancelled) {
        const QRegularExpressionMatch match = m_expression.match(text, from);
        if (!match.hasMatch() || match.capturedEnd() > range.end())
            break;
        const qsizetype length = match.capturedLength();
        if (length > 0)
            matches += {match.capturedStart(), length};
        from = match.capturedEnd() + (length > 0 ? 0 : 1);
    }
    return matches;
}

QString DXTextSearch::replacementFor(const QString &text, const DXTextRange &match,
                                     const QString &replacement) const
{
    if (!m_isExpression)
        return replacement;
    // Found again where it is, with what surrounds it, for its groups.
    const QRegularExpressionMatch groups =
        m_expression.match(text, match.location, QRegularExpression::NormalMatch,
                           QRegularExpression::AnchorAtOffsetMatchOption);
    QString result;
    for (qsizetype at = 0; at < replacement.size(); ++at) {
        const QChar c = replacement[at];
        const QChar next = at + 1 < replacement.size() ? replacement[at + 1] : QChar();
        if ((c != u'\\' && c != u'$') || next.isNull()) {
            result += c;
            continue;
        }
        ++at;
        if (next >= u'0' && next <= u'9')
            result += groups.captured(next.digitValue());
        else if (c == u'\\' && (next == u'n' || next == u't'))
            result += next == u'n' ? u'\n' : u'\t';
        else if (next == u'\\' || next == u'$')
            result += next;
        else
            result += QString(c) + next;
    }
    return result;
}
