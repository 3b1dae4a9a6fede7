// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLEditor.h"

#include "ui/DXTheme.h"
#include "ui/editor/DXSQLBrackets.h"
#include "ui/editor/DXSQLEditorActions.h"
#include "ui/editor/DXSQLFolding.h"
#include "ui/editor/DXSQLStyler.h"
#include "ui/editor/DXSQLTyping.h"

#include <QEvent>
#include <QFontDatabase>
#include <QKeyEvent>

#include <algorithm>

namespace
{

constexpr QLatin1String comment("-- ");
// Between the line numbers' margin and the text.
constexpr int textMargin = 8;
constexpr int numberMargin = 0;
constexpr int codeUnits = QsciScintillaBase::SC_LINECHARACTERINDEX_UTF16;
// What surroundings() looks at at most.
constexpr int linesAround = 2000;
constexpr long bytesAround = 200'000;

} // namespace

DXSQLEditor::DXSQLEditor(const Init &init, QWidget *parent)
    : QsciScintilla(parent)
    , m_splitter(init.options)
    , m_styler(std::make_unique<DXSQLStyler>(
          DXSQLStyler::Init{.view = *this, .options = init.options, .keywords = init.keywords}))
    , m_brackets(std::make_unique<DXSQLBrackets>(init.options, *m_styler))
    , m_typing(std::make_unique<DXSQLTyping>(DXSQLTyping::Init{
          .editor = *this, .options = init.options, .styler = *m_styler, .brackets = *m_brackets}))
    , m_folding(std::make_unique<DXSQLFolding>(*this, *m_styler))
{
    setUpView();
    DXSQLEditorActions::freeKeys(*this);
    DXSQLEditorActions::addTo(*this);
    applyTheme(DXTheme::of(palette()));

    connect(this, &QsciScintillaBase::SCN_STYLENEEDED, this,
            [this](int position) { m_styler->styleUpTo(position); });
    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int kind, const char *, int, int linesAdded, int, int, int, int,
                   int) { modified(position, kind, linesAdded); });
    connect(this, &QsciScintillaBase::SCN_CHARADDED, this,
            [this](int character) { m_typing->added(character); });
    connect(this, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int what) {
        if (what & (SC_UPDATE_SELECTION | SC_UPDATE_CONTENT))
            m_brackets->show(*this);
    });
    connect(this, &QsciScintillaBase::SCN_ZOOM, this, &DXSQLEditor::showLineNumbers);
    connect(this, &QsciScintilla::linesChanged, this, &DXSQLEditor::showLineNumbers);
    showLineNumbers();
}

DXSQLEditor::~DXSQLEditor() = default;

void DXSQLEditor::setUpView()
{
    setUtf8(true);
    setEolMode(EolUnix);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("SQL"));
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setIndentationsUseTabs(false);
    setIndentationWidth(4);
    setTabWidth(4);
    setBackspaceUnindents(true);
    setMarginType(numberMargin, NumberMargin);
    setCaretLineVisible(true);
    setScrollWidth(1);
    setScrollWidthTracking(true);
    SendScintilla(SCI_SETMODEVENTMASK, long(SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT));
    SendScintilla(SCI_ALLOCATELINECHARACTERINDEX, long(codeUnits));
    SendScintilla(SCI_SETMULTIPLESELECTION, 1L);
    SendScintilla(SCI_SETADDITIONALSELECTIONTYPING, 1L);
    SendScintilla(SCI_SETMOUSESELECTIONRECTANGULARSWITCH, 1L);
    SendScintilla(SCI_SETMULTIPASTE, long(SC_MULTIPASTE_EACH));
    SendScintilla(SCI_SETVIRTUALSPACEOPTIONS, long(SCVS_RECTANGULARSELECTION));
    SendScintilla(SCI_SETMARGINLEFT, 0L, long(textMargin));
    SendScintilla(SCI_INDICSETSTYLE, long(ErrorIndicator), long(INDIC_SQUIGGLE));
    SendScintilla(SCI_INDICSETSTYLE, long(RunningIndicator), long(INDIC_FULLBOX));
    SendScintilla(SCI_INDICSETUNDER, long(RunningIndicator), 1L);
    SendScintilla(SCI_INDICSETSTYLE, long(AutoClosedIndicator), long(INDIC_HIDDEN));
}

void DXSQLEditor::showLineNumbers()
{
    const auto digits = std::max<qsizetype>(3, QString::number(lines()).size());
    setMarginWidth(numberMargin, QString(digits + 1, u'9'));
}

void DXSQLEditor::changeEvent(QEvent *event)
{
    QsciScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme(DXTheme::of(palette()));
}

// Scintilla keeps Esc for itself, which it needs only to give up all carets but one.
bool DXSQLEditor::event(QEvent *event)
{
    const bool isEscape = event->type() == QEvent::ShortcutOverride
                          && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (isEscape && SendScintilla(SCI_GETSELECTIONS) == 1) {
        event->ignore();
        return false;
    }
    return QsciScintilla::event(event);
}

void DXSQLEditor::keyPressEvent(QKeyEvent *event)
{
    if (isReadOnly() || !m_typing->takesKey(*event))
        QsciScintilla::keyPressEvent(event);
}

void DXSQLEditor::applyTheme(const DXTheme &theme)
{
    setPaper(theme.surface);
    setColor(theme.text);
    m_styler->applyTheme(theme);
    setMarginsBackgroundColor(theme.surface);
    setMarginsForegroundColor(theme.null);
    setMarginsFont(font());
    m_folding->applyTheme(theme);
    setCaretForegroundColor(theme.text);
    SendScintilla(SCI_SETADDITIONALCARETFORE, theme.accent);
    setCaretLineBackgroundColor(theme.alternateRow);
    setSelectionBackgroundColor(theme.selection);
    resetSelectionForegroundColor();
    SendScintilla(SCI_SETADDITIONALSELBACK, theme.selection);
    setMatchedBraceBackgroundColor(theme.selection);
    setMatchedBraceForegroundColor(theme.text);
    setUnmatchedBraceBackgroundColor(theme.surface);
    setUnmatchedBraceForegroundColor(theme.danger);
    setIndicatorForegroundColor(theme.danger, ErrorIndicator);
    setIndicatorForegroundColor(theme.accent, RunningIndicator);
    SendScintilla(SCI_INDICSETALPHA, long(RunningIndicator), 24L);
    SendScintilla(SCI_INDICSETOUTLINEALPHA, long(RunningIndicator), 60L);
}

int DXSQLEditor::line(long byte) const
{
    return static_cast<int>(SendScintilla(SCI_LINEFROMPOSITION, byte));
}

void DXSQLEditor::modified(int bytePosition, int kind, int linesAdded)
{
    if (!(kind & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)))
        return;
    const int changed = line(bytePosition);
    m_styler->changed(changed, linesAdded);
    const long begin = SendScintilla(SCI_POSITIONFROMLINE, long(changed));
    const long end = SendScintilla(SCI_GETLINEENDPOSITION, long(changed));
    SendScintilla(SCI_SETINDICATORCURRENT, long(ErrorIndicator));
    SendScintilla(SCI_INDICATORCLEARRANGE, static_cast<unsigned long>(begin), end - begin);
}

QByteArray DXSQLEditor::utf8() const
{
    return bytes(0, SendScintilla(SCI_GETLENGTH));
}

QByteArray DXSQLEditor::bytes(long begin, long end) const
{
    const long at =
        SendScintilla(SCI_GETRANGEPOINTER, static_cast<unsigned long>(begin), end - begin);
    return {reinterpret_cast<const char *>(at), end - begin};
}

long DXSQLEditor::byteAt(qsizetype position) const
{
    const long line = SendScintilla(SCI_LINEFROMINDEXPOSITION, static_cast<unsigned long>(position),
                                    long(codeUnits));
    const long start = SendScintilla(SCI_POSITIONFROMLINE, line);
    const long before =
        SendScintilla(SCI_INDEXPOSITIONFROMLINE, static_cast<unsigned long>(line), long(codeUnits));
    const long byte = SendScintilla(SCI_POSITIONRELATIVECODEUNITS,
                                    static_cast<unsigned long>(start), long(position) - before);
    // Zero also says that the text is shorter.
    return byte == 0 && position > 0 ? SendScintilla(SCI_GETLENGTH) : byte;
}

qsizetype DXSQLEditor::positionOf(long byte) const
{
    const auto line = static_cast<unsigned long>(this->line(byte));
    const long start = SendScintilla(SCI_POSITIONFROMLINE, static_cast<long>(line));
    return SendScintilla(SCI_INDEXPOSITIONFROMLINE, line, long(codeUnits))
           + SendScintilla(SCI_COUNTCODEUNITS, static_cast<unsigned long>(start), byte);
}

qsizetype DXSQLEditor::caretPosition() const
{
    return positionOf(SendScintilla(SCI_GETCURRENTPOS));
}

void DXSQLEditor::setCaretPosition(qsizetype position)
{
    const long byte = byteAt(position);
    SendScintilla(SCI_ENSUREVISIBLE, long(line(byte)));
    SendScintilla(SCI_GOTOPOS, byte);
}

DXTextRange DXSQLEditor::selectedRange() const
{
    const qsizetype begin = positionOf(SendScintilla(SCI_GETSELECTIONSTART));
    return {begin, positionOf(SendScintilla(SCI_GETSELECTIONEND)) - begin};
}

void DXSQLEditor::setSelectedRange(const DXTextRange &range)
{
    const long begin = byteAt(range.location);
    const long end = byteAt(range.end());
    SendScintilla(SCI_ENSUREVISIBLE, long(line(begin)));
    SendScintilla(SCI_ENSUREVISIBLE, long(line(end)));
    SendScintilla(SCI_SETSEL, begin, end);
}

bool DXSQLEditor::hasSelection() const
{
    return SendScintilla(SCI_GETSELECTIONEMPTY) == 0;
}

QString DXSQLEditor::selectedSql() const
{
    return hasSelection() ? selectedText() : QString();
}

DXSQLEditor::Surroundings DXSQLEditor::surroundings() const
{
    const long caret = SendScintilla(SCI_GETCURRENTPOS);
    const auto first =
        static_cast<long>(m_styler->lines().statementStart(line(caret), linesAround));
    const long begin = std::max(SendScintilla(SCI_POSITIONFROMLINE, first), caret - bytesAround);
    const long lastLine = std::min(long(line(caret)) + linesAround, long(lines()) - 1);
    const long end = std::min(SendScintilla(SCI_GETLINEENDPOSITION, lastLine), caret + bytesAround);
    const QString before = QString::fromUtf8(bytes(begin, caret));
    return {before + QString::fromUtf8(bytes(caret, end)), before.size()};
}

void DXSQLEditor::replaceAroundCaret(qsizetype before, qsizetype behind, const QString &text)
{
    const auto caret = static_cast<unsigned long>(SendScintilla(SCI_GETCURRENTPOS));
    const long begin = SendScintilla(SCI_POSITIONRELATIVECODEUNITS, caret, -long(before));
    const long end = SendScintilla(SCI_POSITIONRELATIVECODEUNITS, caret, long(behind));
    SendScintilla(SCI_GOTOPOS, replaceBytes(begin, end, text));
}

void DXSQLEditor::replaceRange(const DXTextRange &range, const QString &text)
{
    replaceBytes(byteAt(range.location), byteAt(range.end()), text);
}

// Where the new text ends.
long DXSQLEditor::replaceBytes(long begin, long end, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    beginUndoAction();
    SendScintilla(SCI_SETTARGETRANGE, static_cast<unsigned long>(begin), end);
    SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(bytes.size()), bytes.constData());
    endUndoAction();
    return begin + long(bytes.size());
}

std::optional<DXQueryDetails> DXSQLEditor::statementAtCaret() const
{
    return m_splitter.statementAt(text(), caretPosition());
}

QList<DXQueryDetails> DXSQLEditor::statements() const
{
    if (!hasSelection())
        return m_splitter.split(text());
    const DXTextRange selected = selectedRange();
    QList<DXQueryDetails> statements = m_splitter.split(selectedSql());
    const qsizetype linesBefore = line(SendScintilla(SCI_GETSELECTIONSTART));
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
        const long begin = byteAt(range.location);
        SendScintilla(SCI_INDICATORFILLRANGE, static_cast<unsigned long>(begin),
                      byteAt(range.end()) - begin);
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
    const bool hadSelection = hasSelection();
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

void DXSQLEditor::duplicateLines()
{
    const long begin = SendScintilla(SCI_GETSELECTIONSTART);
    const long end = SendScintilla(SCI_GETSELECTIONEND);
    int last = line(end);
    if (last > line(begin) && end == SendScintilla(SCI_POSITIONFROMLINE, long(last)))
        --last;
    const long from = SendScintilla(SCI_POSITIONFROMLINE, long(line(begin)));
    const long to = SendScintilla(SCI_GETLINEENDPOSITION, long(last));
    const QByteArray copy = '\n' + bytes(from, to);
    SendScintilla(SCI_INSERTTEXT, static_cast<unsigned long>(to), copy.constData());
    SendScintilla(SCI_SETSEL, begin + long(copy.size()), end + long(copy.size()));
}

void DXSQLEditor::toggleFoldAtCaret()
{
    m_folding->toggle(line(SendScintilla(SCI_GETCURRENTPOS)));
}

void DXSQLEditor::foldAll()
{
    m_folding->foldAll();
}

void DXSQLEditor::unfoldAll()
{
    m_folding->unfoldAll();
}

void DXSQLEditor::insertText(const QString &text)
{
    replaceSelectedText(text);
    setFocus();
}
