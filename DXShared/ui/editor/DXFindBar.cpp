// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXFindBar.h"

#include "dispatch/DXDispatch.h"
#include "ui/DXTheme.h"
#include "ui/editor/DXSQLEditor.h"

#include <QAction>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <chrono>

namespace
{

using Base = QsciScintillaBase;

constexpr int matchIndicator = DXSQLEditor::FirstFreeIndicator;
constexpr int rangeIndicator = matchIndicator + 1;
constexpr std::chrono::milliseconds afterTyping(40);
constexpr std::chrono::milliseconds afterEdit(200);
// On one screen; there may be more in lines that reach far beyond it.
constexpr qsizetype mostMarks = 5000;

} // namespace

struct DXFindBar::Search
{
    std::atomic<bool> isCancelled = false;
    /// Who waits for it, while there is somebody. Belongs to the main thread.
    DXFindBar *bar = nullptr;
};

DXFindBar::DXFindBar(DXSQLEditor &editor, QWidget *parent)
    : QWidget(parent)
    , m_editor(editor)
    , m_wanted(new QLineEdit(this))
    , m_replacement(new QLineEdit(this))
    , m_count(new QLabel(this))
    , m_error(new QLabel(this))
    , m_replaceButtons(new QWidget(this))
{
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setHorizontalSpacing(8);
    layout->setVerticalSpacing(4);
    layout->setColumnStretch(0, 1);
    buildFindRow(*layout);
    buildReplaceRow(*layout);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setWordWrap(true);
    layout->addWidget(m_error, 2, 0, 1, 2);
    addActions();
    hide();

    m_delay.setSingleShot(true);
    connect(&m_delay, &QTimer::timeout, this, [this] { search(m_then); });
    connect(&editor, &QsciScintilla::textChanged, this, &DXFindBar::textChanged);
    connect(&editor, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int what) {
        markVisible();
        if (what & Base::SC_UPDATE_SELECTION)
            showCount();
    });
    for (const int indicator : {matchIndicator, rangeIndicator}) {
        editor.SendScintilla(Base::SCI_INDICSETSTYLE, static_cast<unsigned long>(indicator),
                             long(Base::INDIC_FULLBOX));
        editor.SendScintilla(Base::SCI_INDICSETUNDER, static_cast<unsigned long>(indicator), 1L);
    }
    applyTheme();
}

DXFindBar::~DXFindBar()
{
    if (!m_search)
        return;
    m_search->isCancelled = true;
    m_search->bar = nullptr;
}

QToolButton *DXFindBar::addButton(QLayout &row, const QString &text, const QString &tip,
                                  const QKeySequence &key)
{
    auto *button = new QToolButton(this);
    button->setText(text);
    button->setToolTip(QStringLiteral("%1 (%2)").arg(tip, key.toString(QKeySequence::NativeText)));
    button->setAccessibleName(tip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    row.addWidget(button);
    return button;
}

QToolButton *DXFindBar::addToggle(QLayout &row, const QString &text, const QString &tip,
                                  const QKeySequence &key)
{
    QToolButton *button = addButton(row, text, tip, key);
    button->setCheckable(true);
    clickOn(key, *button);
    connect(button, &QToolButton::toggled, this, &DXFindBar::queryChanged);
    return button;
}

// While the bar has the focus: elsewhere such keys open menus.
void DXFindBar::clickOn(const QKeySequence &key, QToolButton &button)
{
    auto *const shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, &button, &QToolButton::click);
}

void DXFindBar::buildFindRow(QGridLayout &layout)
{
    m_wanted->setPlaceholderText(tr("Find"));
    m_wanted->setAccessibleName(tr("Find"));
    m_wanted->setClearButtonEnabled(true);
    connect(m_wanted, &QLineEdit::textChanged, this, &DXFindBar::queryChanged);
    layout.addWidget(m_wanted, 0, 0);
    auto *row = new QHBoxLayout;
    row->setSpacing(4);
    layout.addLayout(row, 0, 1);
    m_case = addToggle(*row, QStringLiteral("Aa"), tr("Match case"), Qt::ALT | Qt::Key_C);
    m_words = addToggle(*row, QStringLiteral("W"), tr("Whole words"), Qt::ALT | Qt::Key_W);
    m_expression =
        addToggle(*row, QStringLiteral(".*"), tr("Regular expression"), Qt::ALT | Qt::Key_R);
    m_inSelection = addToggle(*row, QStringLiteral("[…]"), tr("Only in the selected lines"),
                              Qt::ALT | Qt::Key_L);
    m_inSelection->setEnabled(false);
    m_count->setTextFormat(Qt::PlainText);
    m_count->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // So that nothing moves while numbers change.
    m_count->setMinimumWidth(
        m_count->fontMetrics().horizontalAdvance(QStringLiteral("9,999 of 9,999")));
    row->addWidget(m_count);
    connect(addButton(*row, QStringLiteral("↑"), tr("Previous match"), Qt::SHIFT | Qt::Key_F3),
            &QToolButton::clicked, this, &DXFindBar::findPrevious);
    connect(addButton(*row, QStringLiteral("↓"), tr("Next match"), Qt::Key_F3),
            &QToolButton::clicked, this, &DXFindBar::findNext);
    connect(addButton(*row, QStringLiteral("✕"), tr("Close"), Qt::Key_Escape),
            &QToolButton::clicked, this, &DXFindBar::dismiss);
}

void DXFindBar::buildReplaceRow(QGridLayout &layout)
{
    m_replacement->setPlaceholderText(tr("Replace with"));
    m_replacement->setAccessibleName(tr("Replace with"));
    m_replacement->setClearButtonEnabled(true);
    layout.addWidget(m_replacement, 1, 0);
    auto *row = new QHBoxLayout(m_replaceButtons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    connect(addButton(*row, tr("Replace"), tr("Replace this match"), Qt::Key_Return),
            &QToolButton::clicked, this, &DXFindBar::replaceCurrent);
    const QKeySequence allKey(Qt::CTRL | Qt::ALT | Qt::Key_Return);
    QToolButton *all = addButton(*row, tr("Replace All"), tr("Replace all matches"), allKey);
    connect(all, &QToolButton::clicked, this, &DXFindBar::replaceAll);
    clickOn(allKey, *all);
    row->addStretch();
    layout.addWidget(m_replaceButtons, 1, 1);
}

void DXFindBar::addActions()
{
    const auto add = [this](const QString &name, const QString &text, const QKeySequence &key,
                            void (DXFindBar::*run)()) {
        auto *action = new QAction(text, this);
        action->setObjectName(u"editor."_qs + name);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, run);
        m_editor.addAction(action);
        addAction(action);
        return action;
    };
    add(u"find"_qs, tr("Find…"), Qt::CTRL | Qt::Key_F, &DXFindBar::openToFind);
    add(u"replace"_qs, tr("Replace…"), Qt::CTRL | Qt::Key_H, &DXFindBar::openToReplace);
    add(u"findNext"_qs, tr("Find Next"), Qt::Key_F3, &DXFindBar::findNext);
    add(u"findPrevious"_qs, tr("Find Previous"), Qt::SHIFT | Qt::Key_F3, &DXFindBar::findPrevious);
    m_escape = add(u"closeFind"_qs, tr("Close Find"), Qt::Key_Escape, &DXFindBar::dismiss);
    m_escape->setEnabled(false);
}

void DXFindBar::openToFind()
{
    open(false);
}

void DXFindBar::openToReplace()
{
    open(true);
}

void DXFindBar::open(bool replaces)
{
    const bool wasVisible = isVisible();
    m_replacement->setVisible(replaces && !m_editor.isReadOnly());
    m_replaceButtons->setVisible(replaces && !m_editor.isReadOnly());
    m_escape->setEnabled(true);
    if (!wasVisible || m_editor.hasFocus())
        takeSelection();
    show();
    m_wanted->setFocus(Qt::ShortcutFocusReason);
    m_wanted->selectAll();
    queryChanged();
}

// What is selected is what is looked for, or where.
void DXFindBar::takeSelection()
{
    const DXTextRange selected = m_editor.selectedRange();
    const QString text = m_editor.selectedSql();
    m_start = selected.location;
    const bool areLines = text.contains(u'\n');
    if (areLines)
        limitTo(selected);
    m_inSelection->setEnabled(areLines);
    const QSignalBlocker quiet(m_inSelection);
    m_inSelection->setChecked(areLines);
    if (!areLines)
        limitTo({});
    if (!areLines && !text.isEmpty())
        m_wanted->setText(m_expression->isChecked() ? QRegularExpression::escape(text) : text);
}

// The editor moves the range along with the text.
void DXFindBar::limitTo(const DXTextRange &range)
{
    m_editor.SendScintilla(Base::SCI_SETINDICATORCURRENT, long(rangeIndicator));
    m_editor.SendScintilla(Base::SCI_INDICATORCLEARRANGE, 0UL,
                           m_editor.SendScintilla(Base::SCI_GETLENGTH));
    const long begin = m_editor.byteAt(range.location);
    if (range.length > 0)
        m_editor.SendScintilla(Base::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(begin),
                               m_editor.byteAt(range.end()) - begin);
}

DXTextRange DXFindBar::searchedRange() const
{
    const long length = m_editor.SendScintilla(Base::SCI_GETLENGTH);
    if (!m_inSelection->isChecked())
        return {0, m_editor.positionOf(length)};
    const auto indicator = static_cast<unsigned long>(rangeIndicator);
    const auto end = [&](long byte) {
        return m_editor.SendScintilla(Base::SCI_INDICATOREND, indicator, byte);
    };
    const bool startsInside =
        m_editor.SendScintilla(Base::SCI_INDICATORVALUEAT, indicator, 0L) != 0;
    const long from = startsInside ? 0 : end(0);
    // Without any range the indicator reaches nowhere.
    const qsizetype begin = m_editor.positionOf(from);
    return {begin, m_editor.positionOf(std::max(from, end(from))) - begin};
}

void DXFindBar::dismiss()
{
    hide();
    m_escape->setEnabled(false);
    limitTo({});
    m_inSelection->setChecked(false);
    m_inSelection->setEnabled(false);
    m_delay.stop();
    m_isCurrent = false;
    m_matches.clear();
    m_marked = {};
    markVisible();
    m_editor.setFocus();
}

DXTextSearch::Query DXFindBar::query() const
{
    return {.wanted = m_wanted->text(),
            .matchesCase = m_case->isChecked(),
            .wholeWords = m_words->isChecked(),
            .isRegularExpression = m_expression->isChecked()};
}

void DXFindBar::queryChanged()
{
    m_isCurrent = false;
    m_then = isVisible() ? Then::SelectFromStart : Then::Nothing;
    const QString error = m_wanted->text().isEmpty() ? QString() : DXTextSearch(query()).error();
    m_error->setText(error);
    m_error->setVisible(!error.isEmpty());
    m_delay.start(afterTyping);
}

void DXFindBar::textChanged()
{
    m_isCurrent = false;
    if (isVisible() && !m_delay.isActive()) {
        m_then = Then::Nothing;
        m_delay.start(afterEdit);
    }
}

void DXFindBar::search(Then then)
{
    m_delay.stop();
    m_then = then;
    if (m_search)
        m_search->isCancelled = true;
    m_search = std::make_shared<Search>();
    m_search->bar = this;
    DXDispatch::background(
        [search = m_search, bytes = m_editor.utf8(), range = searchedRange(), query = query()] {
            const auto matches =
                DXTextSearch(query).find(QString::fromUtf8(bytes), range, search->isCancelled);
            DXDispatch::main([search, matches] {
                if (search->bar && !search->isCancelled)
                    search->bar->found(matches);
            });
        });
}

void DXFindBar::found(const QList<DXTextRange> &matches)
{
    if (m_delay.isActive())
        return;
    m_matches = matches;
    m_isCurrent = true;
    m_marked = {};
    markVisible();
    switch (std::exchange(m_then, Then::Nothing)) {
    case Then::Nothing:
        break;
    case Then::SelectFromStart:
        if (!matches.isEmpty())
            select(firstMatchFrom(m_start));
        break;
    case Then::Next:
        step(true);
        break;
    case Then::Previous:
        step(false);
        break;
    case Then::ReplaceAll:
        replaceAll();
        break;
    }
    showCount();
}

// The first of all when there is none behind.
qsizetype DXFindBar::firstMatchFrom(qsizetype position) const
{
    const auto next = std::partition_point(
        m_matches.begin(), m_matches.end(),
        [position](const DXTextRange &match) { return match.location < position; });
    return next == m_matches.end() ? 0 : next - m_matches.begin();
}

// -1 for none.
qsizetype DXFindBar::selectedMatch() const
{
    if (m_matches.isEmpty())
        return -1;
    const DXTextRange selected = m_editor.selectedRange();
    const qsizetype index = firstMatchFrom(selected.location);
    return m_matches[index] == selected ? index : -1;
}

void DXFindBar::select(qsizetype index)
{
    m_editor.setSelectedRange(m_matches[index]);
    m_editor.SendScintilla(Base::SCI_SCROLLCARET);
    showCount();
}

void DXFindBar::step(bool forward)
{
    if (m_wanted->text().isEmpty()) {
        openToFind();
        return;
    }
    if (!m_isCurrent) {
        search(forward ? Then::Next : Then::Previous);
        return;
    }
    if (m_matches.isEmpty())
        return;
    const DXTextRange selected = m_editor.selectedRange();
    const qsizetype count = m_matches.size();
    if (forward)
        select(firstMatchFrom(selectedMatch() < 0 ? selected.location : selected.end()));
    else
        select((firstMatchFrom(selected.location) + count - 1) % count);
    m_start = m_editor.selectedRange().location;
}

void DXFindBar::findNext()
{
    step(true);
}

void DXFindBar::findPrevious()
{
    step(false);
}

void DXFindBar::replaceCurrent()
{
    const qsizetype index = m_isCurrent ? selectedMatch() : -1;
    if (index >= 0 && !m_editor.isReadOnly())
        m_editor.replaceSelectedText(DXTextSearch(query()).replacementFor(
            m_editor.text(), m_matches[index], m_replacement->text()));
    step(true);
}

void DXFindBar::replaceAll()
{
    if (!m_isCurrent) {
        search(Then::ReplaceAll);
        return;
    }
    if (m_matches.isEmpty() || m_editor.isReadOnly())
        return;
    const DXTextSearch search(query());
    const QString text = m_editor.text();
    const qsizetype begin = m_matches.first().location;
    QString result;
    qsizetype at = begin;
    for (const DXTextRange &match : std::as_const(m_matches)) {
        result += QStringView(text).sliced(at, match.location - at);
        result += search.replacementFor(text, match, m_replacement->text());
        at = match.end();
    }
    const qsizetype count = m_matches.size();
    DXTextRange range = searchedRange();
    range.length += result.size() - (at - begin);
    m_editor.replaceRange({begin, at - begin}, result);
    if (m_inSelection->isChecked())
        limitTo(range);
    m_delay.stop();
    m_isCurrent = false;
    m_matches.clear();
    m_marked = {};
    markVisible();
    m_count->setText(tr("Replaced %1").arg(QLocale().toString(count)));
}

void DXFindBar::markVisible()
{
    if (!m_isCurrent && !m_matches.isEmpty())
        return;
    const auto docLine = [this](long shown) {
        return static_cast<int>(m_editor.SendScintilla(Base::SCI_DOCLINEFROMVISIBLE, shown));
    };
    const long top = m_editor.SendScintilla(Base::SCI_GETFIRSTVISIBLELINE);
    const Lines lines{docLine(top), docLine(top + m_editor.SendScintilla(Base::SCI_LINESONSCREEN))};
    if (lines == m_marked)
        return;
    m_marked = lines;
    m_editor.SendScintilla(Base::SCI_SETINDICATORCURRENT, long(matchIndicator));
    m_editor.SendScintilla(Base::SCI_INDICATORCLEARRANGE, 0UL,
                           m_editor.SendScintilla(Base::SCI_GETLENGTH));
    const qsizetype from =
        m_editor.positionOf(m_editor.SendScintilla(Base::SCI_POSITIONFROMLINE, long(lines.first)));
    const qsizetype end =
        m_editor.positionOf(m_editor.SendScintilla(Base::SCI_GETLINEENDPOSITION, long(lines.last)));
    auto match =
        std::partition_point(m_matches.begin(), m_matches.end(),
                             [from](const DXTextRange &each) { return each.end() <= from; });
    for (qsizetype marks = 0; match != m_matches.end() && match->location < end; ++match) {
        const long begin = m_editor.byteAt(match->location);
        m_editor.SendScintilla(Base::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(begin),
                               m_editor.byteAt(match->end()) - begin);
        if (++marks == mostMarks)
            break;
    }
}

void DXFindBar::showCount()
{
    if (!isVisible() || !m_isCurrent)
        return;
    const QLocale locale;
    const QString count = locale.toString(m_matches.size());
    const qsizetype index = selectedMatch();
    if (m_wanted->text().isEmpty() || !m_error->text().isEmpty())
        m_count->clear();
    else if (m_matches.isEmpty())
        m_count->setText(tr("No matches"));
    else if (index >= 0)
        m_count->setText(tr("%1 of %2").arg(locale.toString(index + 1), count));
    else
        m_count->setText(m_matches.size() == 1 ? tr("1 match") : tr("%1 matches").arg(count));
}

void DXFindBar::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (m_replacement->hasFocus())
        replaceCurrent();
    else
        step(!event->modifiers().testFlag(Qt::ShiftModifier));
}

void DXFindBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void DXFindBar::applyTheme()
{
    const DXTheme &theme = DXTheme::of(palette());
    for (const auto &[label, color] :
         {std::pair(m_count, theme.secondaryText), std::pair(m_error, theme.danger)}) {
        QPalette colors = palette();
        colors.setColor(QPalette::WindowText, color);
        label->setPalette(colors);
    }
    const auto style = [this](int indicator, const QColor &color, long alpha, long outline) {
        m_editor.setIndicatorForegroundColor(color, indicator);
        const auto number = static_cast<unsigned long>(indicator);
        m_editor.SendScintilla(Base::SCI_INDICSETALPHA, number, alpha);
        m_editor.SendScintilla(Base::SCI_INDICSETOUTLINEALPHA, number, outline);
    };
    style(matchIndicator, theme.warning, 60, 130);
    style(rangeIndicator, theme.accent, 18, 0);
}
