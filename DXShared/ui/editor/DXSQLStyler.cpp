// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLStyler.h"

#include "ui/DXTheme.h"

#include <algorithm>
#include <chrono>

namespace
{

using Base = QsciScintillaBase;

// More than any screen shows; what lies further above the end of what is asked for is coloured when
// it is scrolled to.
constexpr int linesAtOnce = 300;
constexpr std::chrono::milliseconds slice(4);
constexpr int linesBetweenLooksAtTheClock = 64;

} // namespace

DXSQLStyler::DXSQLStyler(const Init &init)
    : m_view(init.view)
    , m_options(init.options)
    , m_lines(
          init.options,
          {.lineCount = [this] { return qsizetype(m_view.SendScintilla(Base::SCI_GETLINECOUNT)); },
           .lineText = [this](qsizetype line) { return lineText(line); },
           .lineRead = [this](qsizetype line,
                              const SQLLineStates::Line &state) { lineRead(line, state); }})
{
    m_keywords.reserve(init.keywords.size());
    for (const QString &keyword : init.keywords)
        m_keywords.insert(keyword.toUpper());
    m_idle.setSingleShot(true);
    QObject::connect(&m_idle, &QTimer::timeout, &m_idle, [this] { readInIdleTime(); });
}

void DXSQLStyler::applyTheme(const DXTheme &theme)
{
    for (const auto &[style, color] : std::initializer_list<std::pair<int, QColor>>{
             {DefaultStyle, theme.text},
             {KeywordStyle, theme.accent},
             {StringStyle, theme.success},
             {CommentStyle, theme.secondaryText},
             {NumberStyle, theme.warning},
             {QuotedNameStyle, theme.text},
             {OperatorStyle, theme.secondaryText},
         }) {
        const auto number = static_cast<unsigned long>(style);
        m_view.SendScintilla(Base::SCI_STYLESETFORE, number, color);
        m_view.SendScintilla(Base::SCI_STYLESETBACK, number, theme.surface);
        m_view.SendScintilla(Base::SCI_STYLESETBOLD, number, long(style == KeywordStyle));
        m_view.SendScintilla(Base::SCI_STYLESETITALIC, number, long(style == CommentStyle));
    }
}

QString DXSQLStyler::lineText(qsizetype line) const
{
    const long begin = m_view.SendScintilla(Base::SCI_POSITIONFROMLINE, long(line));
    const long end = m_view.SendScintilla(Base::SCI_POSITIONFROMLINE, long(line + 1));
    const long bytes = m_view.SendScintilla(Base::SCI_GETRANGEPOINTER,
                                            static_cast<unsigned long>(begin), end - begin);
    return QString::fromUtf8(reinterpret_cast<const char *>(bytes), end - begin);
}

void DXSQLStyler::changed(int line, int linesAdded)
{
    m_lines.changed(line, linesAdded);
    if (line < m_isStyled.size()) {
        if (linesAdded > 0)
            m_isStyled.insert(line, linesAdded, false);
        else if (linesAdded < 0)
            m_isStyled.remove(line, std::min(qsizetype(-linesAdded), m_isStyled.size() - line));
    }
    if (line < m_isStyled.size())
        m_isStyled[line] = false;
    m_firstUnstyled = std::min(m_firstUnstyled, line);
    m_idle.start();
}

void DXSQLStyler::lineRead(qsizetype line, const SQLLineStates::Line &state)
{
    if (line >= m_isStyled.size())
        m_isStyled.resize(line + 1);
    m_isStyled[line] = false;
    m_firstUnstyled = std::min(m_firstUnstyled, static_cast<int>(line));
    const long level = Base::SC_FOLDLEVELBASE + state.foldDepth
                       + (state.isFoldHeader ? Base::SC_FOLDLEVELHEADERFLAG : 0);
    m_view.SendScintilla(Base::SCI_SETFOLDLEVEL, static_cast<unsigned long>(line), level);
}

// The view takes everything before the last colours for coloured. Where lines in between are not,
// it is sent back to the first of them, and asks again whenever it shows something behind it.
void DXSQLStyler::styleUpTo(int bytePosition)
{
    const int last =
        static_cast<int>(m_view.SendScintilla(Base::SCI_LINEFROMPOSITION, long(bytePosition)));
    m_lines.readUpTo(last);
    for (int at = std::max(m_firstUnstyled, last - linesAtOnce); at <= last; ++at) {
        if (!m_isStyled.value(at))
            styleLine(at);
    }
    while (m_firstUnstyled < m_isStyled.size() && m_isStyled[m_firstUnstyled])
        ++m_firstUnstyled;
    const long unstyled = m_view.SendScintilla(Base::SCI_POSITIONFROMLINE, long(m_firstUnstyled));
    if (unstyled >= 0 && unstyled < m_view.SendScintilla(Base::SCI_GETENDSTYLED))
        m_view.SendScintilla(Base::SCI_STARTSTYLING, unstyled);
}

void DXSQLStyler::styleLine(int line)
{
    const QString content = lineText(line);
    SQLTokenizer tokenizer(m_options, content, m_lines.before(line).lexical);
    QByteArray styles;
    while (const auto token = tokenizer.next()) {
        const QStringView written =
            QStringView(content).sliced(token->range.location, token->range.length);
        styles.append(written.toUtf8().size(), static_cast<char>(styleOf(*token, written)));
    }
    m_view.SendScintilla(Base::SCI_STARTSTYLING,
                         m_view.SendScintilla(Base::SCI_POSITIONFROMLINE, long(line)));
    // At once: the view looks at everything that it shows after each change of styles.
    m_view.SendScintilla(Base::SCI_SETSTYLINGEX, static_cast<unsigned long>(styles.size()),
                         styles.constData());
    m_isStyled[line] = true;
}

int DXSQLStyler::styleOf(const SQLToken &token, QStringView text) const
{
    using Kind = SQLToken::Kind;
    switch (token.kind) {
    case Kind::LineComment:
    case Kind::BlockComment:
        return CommentStyle;
    case Kind::Word:
        return m_keywords.contains(text.toString().toUpper()) ? KeywordStyle : DefaultStyle;
    case Kind::QuotedIdentifier:
    case Kind::UnicodeIdentifier:
        return QuotedNameStyle;
    case Kind::String:
    case Kind::EscapeString:
    case Kind::UnicodeString:
    case Kind::NationalString:
    case Kind::BitString:
    case Kind::HexString:
    case Kind::DollarString:
        return StringStyle;
    case Kind::Integer:
    case Kind::Decimal:
    case Kind::Parameter:
        return NumberStyle;
    case Kind::Operator:
    case Kind::Punctuation:
        return OperatorStyle;
    case Kind::Blank:
    case Kind::Variable:
    case Kind::Other:
        return DefaultStyle;
    }
    return DefaultStyle;
}

void DXSQLStyler::readAll()
{
    m_lines.readUpTo(m_view.SendScintilla(Base::SCI_GETLINECOUNT) - 1);
}

void DXSQLStyler::readInIdleTime()
{
    const auto end = std::chrono::steady_clock::now() + slice;
    while (m_lines.readSome(linesBetweenLooksAtTheClock)) {
        if (std::chrono::steady_clock::now() < end)
            continue;
        m_idle.start(1);
        return;
    }
}
