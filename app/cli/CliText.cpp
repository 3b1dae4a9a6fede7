// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliText.h"

#include <QList>

#include <clocale>
#include <cwchar>

namespace
{

constexpr qsizetype tabWidth = 8;

// Joins emoji and Indic letters into one sign: without it they read differently.
constexpr bool isJoiner(char32_t character)
{
    return character == 0x200C || character == 0x200D;
}

bool needsEscape(char32_t character)
{
    if (character >= 0x20 && character < 0x7F)
        return false;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        return !isJoiner(character);
    default:
        return false;
    }
}

QString escape(char32_t character)
{
    switch (character) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        break;
    }
    const auto code = static_cast<unsigned>(character);
    if (code < 0x100)
        return QString::asprintf("\\x%02X", code);
    return QString::asprintf(code < 0x10000 ? "\\u%04X" : "\\U%08X", code);
}

// The code point at position, which moves behind it; half of a pair stands for itself.
char32_t takeCodePoint(QStringView text, qsizetype &position)
{
    const QChar first = text[position++];
    if (first.isHighSurrogate() && position < text.size() && text[position].isLowSurrogate())
        return QChar::surrogateToUcs4(first, text[position++]);
    return first.unicode();
}

bool isPlain(QStringView text)
{
    for (const QChar character : text) {
        if (character.unicode() < 0x20 || character.unicode() >= 0x7F)
            return false;
    }
    return true;
}

/// Lets wcwidth() know Unicode on this thread, whatever the user's locale is.
class UnicodeWidths
{
public:
    UnicodeWidths()
        : m_before(uselocale(locale()))
    { }
    ~UnicodeWidths() { uselocale(m_before); }
    Q_DISABLE_COPY_MOVE(UnicodeWidths)

private:
    static locale_t locale()
    {
        static const locale_t made = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return made;
    }

    const locale_t m_before;
};

} // namespace

QString CliText::printable(QStringView text)
{
    if (isPlain(text))
        return text.toString();
    QString line;
    line.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype start = at;
        const char32_t character = takeCodePoint(text, at);
        if (needsEscape(character))
            line += escape(character);
        else
            line += text.sliced(start, at - start);
    }
    return line;
}

QString CliText::printableLines(QStringView text)
{
    QString lines;
    for (const QStringView line : text.split(u'\n')) {
        if (line.data() != text.data())
            lines += u'\n';
        QString shown;
        for (const QStringView piece : line.split(u'\t')) {
            if (piece.data() != line.data())
                shown.append(QString(tabWidth - width(shown) % tabWidth, u' '));
            shown += printable(piece.endsWith(u'\r') ? piece.chopped(1) : piece);
        }
        lines += shown;
    }
    return lines;
}

qsizetype CliText::width(QStringView printable)
{
    if (isPlain(printable))
        return printable.size();
    const UnicodeWidths unicode;
    qsizetype columns = 0;
    for (qsizetype at = 0; at < printable.size();) {
        const int width = ::wcwidth(static_cast<wchar_t>(takeCodePoint(printable, at)));
        columns += width < 0 ? 1 : width;
    }
    return columns;
}
