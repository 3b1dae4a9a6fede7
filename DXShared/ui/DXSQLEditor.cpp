// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXSQLEditor.h"

#include "ui/DXTheme.h"

#include <QEvent>
#include <QFontDatabase>

#include <algorithm>

namespace
{

enum Style {
    DefaultStyle,
    KeywordStyle,
    StringStyle,
    CommentStyle,
    NumberStyle,
    QuotedNameStyle,
    OperatorStyle,
};

enum Indicator {
    ErrorIndicator = QsciScintillaBase::INDIC_CONTAINER,
    RunningIndicator,
};

constexpr QLatin1String comment("-- ");
// Bytes between the brackets and the caret that are searched for the other one.
constexpr int textMargin = 8;

/// Scintilla takes colours as blue, green and red.
long scintillaColor(const QColor &color)
{
    return color.red() | color.green() << 8 | color.blue() << 16;
}

} // namespace

DXSQLEditor::DXSQLEditor(const Init &init, QWidget *parent)
    : QsciScintilla(parent)
    , m_options(init.options)
    , m_splitter(init.options)
{
    m_keywords.reserve(init.keywords.size());
    for (const QString &keyword : init.keywords)
        m_keywords.insert(keyword.toUpper());

    setUtf8(true);
    setEolMode(EolUnix);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("SQL"));
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setIndentationsUseTabs(false);
    setIndentationWidth(4);
    setTabWidth(4);
    setAutoIndent(true);
    setBackspaceUnindents(true);
    setBraceMatching(SloppyBraceMatch);
    setMarginType(0, NumberMargin);
    setMarginWidth(1, 0);
    setCaretLineVisible(true);
    setScrollWidth(1);
    setScrollWidthTracking(true);
    SendScintilla(SCI_SETMULTIPLESELECTION, 1L);
    SendScintilla(SCI_SETADDITIONALSELECTIONTYPING, 1L);
    SendScintilla(SCI_SETMULTIPASTE, long(SC_MULTIPASTE_EACH));
    SendScintilla(SCI_SETVIRTUALSPACEOPTIONS, long(SCVS_RECTANGULARSELECTION));
    SendScintilla(SCI_SETMARGINLEFT, 0L, long(textMargin));
    SendScintilla(SCI_INDICSETSTYLE, long(ErrorIndicator), long(INDIC_SQUIGGLE));
    SendScintilla(SCI_INDICSETSTYLE, long(RunningIndicator), long(INDIC_FULLBOX));
    SendScintilla(SCI_INDICSETUNDER, long(RunningIndicator), 1L);
    applyTheme(DXTheme::of(palette()));

    connect(this, &QsciScintillaBase::SCN_STYLENEEDED, this, &DXSQLEditor::styleUpTo);
    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int kind, const char *, int, int linesAdded, int, int, int, int,
                   int) { modified(position, kind, linesAdded); });
    connect(this, &QsciScintilla::linesChanged, this, [this] {
        setMarginWidth(0, QString(std::max(3, int(QString::number(lines()).size())) + 1, u'9'));
    });
    setMarginWidth(0, QStringLiteral("9999"));
}

void DXSQLEditor::changeEvent(QEvent *event)
{
    QsciScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme(DXTheme::of(palette()));
}

void DXSQLEditor::applyTheme(const DXTheme &theme)
{
    setPaper(theme.surface);
    setColor(theme.text);
    for (const auto &[style, color] : std::initializer_list<std::pair<int, QColor>>{
             {DefaultStyle, theme.text},
             {KeywordStyle, theme.accent},
             {StringStyle, theme.success},
             {CommentStyle, theme.secondaryText},
             {NumberStyle, theme.warning},
             {QuotedNameStyle, theme.text},
             {OperatorStyle, theme.secondaryText},
         }) {
        SendScintilla(SCI_STYLESETFORE, long(style), scintillaColor(color));
        SendScintilla(SCI_STYLESETBACK, long(style), scintillaColor(theme.surface));
        SendScintilla(SCI_STYLESETBOLD, long(style), long(style == KeywordStyle));
        SendScintilla(SCI_STYLESETITALIC, long(style), long(style == CommentStyle));
    }
    setMarginsBackgroundColor(theme.surface);
    setMarginsForegroundColor(theme.null);
    setMarginsFont(font());
    setCaretForegroundColor(theme.text);
    setCaretLineBackgroundColor(theme.alternateRow);
    setSelectionBackgroundColor(theme.selection);
    resetSelectionForegroundColor();
    setMatchedBraceBackgroundColor(theme.selection);
    setMatchedBraceForegroundColor(theme.text);
    setUnmatchedBraceBackgroundColor(theme.surface);
    setUnmatchedBraceForegroundColor(theme.danger);
    SendScintilla(SCI_INDICSETFORE, long(ErrorIndicator), scintillaColor(theme.danger));
    SendScintilla(SCI_INDICSETFORE, long(RunningIndicator), scintillaColor(theme.accent));
    SendScintilla(SCI_INDICSETALPHA, long(RunningIndicator), 24L);
    SendScintilla(SCI_INDICSETOUTLINEALPHA, long(RunningIndicator), 60L);
}

int DXSQLEditor::line(long byte) const
{
    return static_cast<int>(SendScintilla(SCI_LINEFROMPOSITION, byte));
}

// Scintilla asks for what it is about to show; lines behind change only as far as something stays
// open in them that did not before, or the other way round.
void DXSQLEditor::styleUpTo(int bytePosition)
{
    int at = std::min(line(SendScintilla(SCI_GETENDSTYLED)), int(m_states.size()));
    const int last = line(bytePosition);
    for (; at < lines(); ++at) {
        const SQLTokenizer::State after =
            styleLine(at, at > 0 ? m_states[at - 1] : SQLTokenizer::State());
        const bool wasKnown = at < m_states.size();
        if (at >= last && wasKnown && m_states[at] == after)
            return;
        if (!wasKnown)
            m_states.append(after);
        else
            m_states[at] = after;
        if (at >= last && !wasKnown)
            return;
    }
}

SQLTokenizer::State DXSQLEditor::styleLine(int line, const SQLTokenizer::State &before)
{
    const QString content = text(line);
    SQLTokenizer tokenizer(m_options, content, before);
    SendScintilla(SCI_STARTSTYLING, SendScintilla(SCI_POSITIONFROMLINE, long(line)));
    while (const auto token = tokenizer.next()) {
        const QStringView written =
            QStringView(content).sliced(token->range.location, token->range.length);
        SendScintilla(SCI_SETSTYLING, static_cast<unsigned long>(written.toUtf8().size()),
                      long(styleOf(*token, written)));
    }
    return tokenizer.state();
}

int DXSQLEditor::styleOf(const SQLToken &token, QStringView text) const
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

void DXSQLEditor::modified(int bytePosition, int kind, int linesAdded)
{
    if (!(kind & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)))
        return;
    const int changed = line(bytePosition);
    if (linesAdded > 0 && changed < m_states.size())
        m_states.insert(changed, linesAdded, SQLTokenizer::State());
    else if (linesAdded < 0 && changed < m_states.size())
        m_states.remove(changed, std::min(-linesAdded, int(m_states.size()) - changed));
    const long begin = SendScintilla(SCI_POSITIONFROMLINE, long(changed));
    const long end = SendScintilla(SCI_GETLINEENDPOSITION, long(changed));
    SendScintilla(SCI_SETINDICATORCURRENT, long(ErrorIndicator));
    SendScintilla(SCI_INDICATORCLEARRANGE, static_cast<unsigned long>(begin), end - begin);
}

int DXSQLEditor::byteAt(qsizetype position) const
{
    return static_cast<int>(
        QStringView(text()).first(std::min(position, text().size())).toUtf8().size());
}

qsizetype DXSQLEditor::positionOf(int byte) const
{
    return QString::fromUtf8(text().toUtf8().first(byte)).size();
}

qsizetype DXSQLEditor::caretPosition() const
{
    return positionOf(static_cast<int>(SendScintilla(SCI_GETCURRENTPOS)));
}

void DXSQLEditor::setCaretPosition(qsizetype position)
{
    SendScintilla(SCI_GOTOPOS, static_cast<unsigned long>(byteAt(position)));
}

DXTextRange DXSQLEditor::selectedRange() const
{
    const qsizetype begin = positionOf(static_cast<int>(SendScintilla(SCI_GETSELECTIONSTART)));
    const qsizetype end = positionOf(static_cast<int>(SendScintilla(SCI_GETSELECTIONEND)));
    return {begin, end - begin};
}

QString DXSQLEditor::selectedSql() const
{
    return hasSelectedText() ? selectedText() : QString();
}

std::optional<DXQueryDetails> DXSQLEditor::statementAtCaret() const
{
    return m_splitter.statementAt(text(), caretPosition());
}

QList<DXQueryDetails> DXSQLEditor::statements() const
{
    if (!hasSelectedText())
        return m_splitter.split(text());
    const DXTextRange selected = selectedRange();
    QList<DXQueryDetails> statements = m_splitter.split(selectedSql());
    const qsizetype linesBefore = QStringView(text()).first(selected.location).count(u'\n');
    for (DXQueryDetails &statement : statements) {
        statement.queryRange.location += selected.location;
        statement.lineNumberOffset += linesBefore;
    }
    return statements;
}

void DXSQLEditor::mark(int indicator, const QList<DXTextRange> &ranges)
{
    SendScintilla(SCI_SETINDICATORCURRENT, long(indicator));
    SendScintilla(SCI_INDICATORCLEARRANGE, 0UL, SendScintilla(SCI_GETLENGTH));
    for (const DXTextRange &range : ranges) {
        const int begin = byteAt(range.location);
        SendScintilla(SCI_INDICATORFILLRANGE, static_cast<unsigned long>(begin),
                      long(byteAt(range.end()) - begin));
    }
}

void DXSQLEditor::markErrors(const QList<DXTextRange> &ranges)
{
    mark(ErrorIndicator, ranges);
}

void DXSQLEditor::markRunning(const std::optional<DXTextRange> &range)
{
    mark(RunningIndicator, range ? QList{*range} : QList<DXTextRange>());
}

void DXSQLEditor::clearMarks()
{
    markErrors({});
    markRunning({});
}

void DXSQLEditor::toggleComment()
{
    int fromLine = 0;
    int fromIndex = 0;
    int toLine = 0;
    int toIndex = 0;
    getCursorPosition(&fromLine, &fromIndex);
    toLine = fromLine;
    const bool hadSelection = hasSelectedText();
    if (hadSelection)
        getSelection(&fromLine, &fromIndex, &toLine, &toIndex);
    // A selection that ends before a line's first character does not mean that line.
    if (toLine > fromLine && toIndex == 0)
        --toLine;
    bool allHaveIt = true;
    for (int line = fromLine; line <= toLine; ++line)
        allHaveIt = allHaveIt && text(line).startsWith(comment);
    beginUndoAction();
    for (int line = fromLine; line <= toLine; ++line) {
        if (!allHaveIt) {
            insertAt(comment, line, 0);
            continue;
        }
        SendScintilla(SCI_DELETERANGE,
                      static_cast<unsigned long>(SendScintilla(SCI_POSITIONFROMLINE, long(line))),
                      long(comment.size()));
    }
    endUndoAction();
    if (hadSelection)
        setSelection(fromLine, 0, toLine,
                     static_cast<int>(text(toLine).chopped(toLine + 1 < lines()).size()));
}

void DXSQLEditor::insertText(const QString &text)
{
    replaceSelectedText(text);
    setFocus();
}
