// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXCompletionPopup.h"

#include "ui/DXTheme.h"
#include "ui/editor/DXCompletionDelegate.h"
#include "ui/editor/DXCompletionModel.h"
#include "ui/editor/DXSQLEditor.h"

#include <QAction>
#include <QKeyEvent>
#include <QListView>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

using Base = QsciScintillaBase;

constexpr int mostRows = 10;
constexpr int leastWidth = 240;
constexpr int mostWidth = 560;
constexpr qsizetype lettersToOpen = 2;

bool continuesName(int character)
{
    return character == '_' || character == '$' || character == '"' || character > 127
           || std::isalnum(character) != 0;
}

} // namespace

DXCompletionPopup::DXCompletionPopup(DXSQLEditor &editor)
    : QFrame(&editor)
    , m_editor(editor)
    , m_model(new DXCompletionModel(this))
    , m_list(new QListView(this))
    , m_delegate(new DXCompletionDelegate(this))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setAutoFillBackground(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(m_list);
    m_list->setModel(m_model);
    m_list->setItemDelegate(m_delegate);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setAccessibleName(tr("Completions"));
    hide();

    auto *action = new QAction(tr("Complete"), &editor);
    action->setObjectName(QStringLiteral("editor.complete"));
    action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Space));
    action->setShortcutContext(Qt::WidgetShortcut);
    editor.addAction(action);
    connect(action, &QAction::triggered, this, &DXCompletionPopup::open);
    connect(m_list, &QListView::clicked, this, [this](const QModelIndex &index) {
        choose(index.row());
        accept();
    });
    connect(&editor, &QsciScintillaBase::SCN_CHARADDED, this, &DXCompletionPopup::typed);
    // Which also says that colours were made.
    connect(&editor, &QsciScintillaBase::SCN_UPDATEUI, this, [this] {
        if (isVisible() && state() != m_state)
            refresh();
    });
    // It becomes a child of the window, to reach beyond the editor's edges.
    connect(&editor, &QObject::destroyed, this, &QObject::deleteLater);
    editor.installEventFilter(this);
    editor.viewport()->installEventFilter(this);
    applyTheme();
}

DXCompletionPopup::~DXCompletionPopup() = default;

void DXCompletionPopup::applyTheme()
{
    const DXTheme &theme = DXTheme::of(m_editor.palette());
    QPalette colors = theme.palette();
    // The frame is what the list leaves of the background.
    colors.setColor(QPalette::Window, theme.border);
    if (palette() != colors)
        setPalette(colors);
    m_list->setPalette(theme.palette());
}

void DXCompletionPopup::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !isVisible())
        applyTheme();
}

void DXCompletionPopup::setCompletion(const std::shared_ptr<const DXSQLCompletion> &completion)
{
    m_completion = completion;
    hide();
}

DXCompletionPopup::State DXCompletionPopup::state() const
{
    return {m_editor.SendScintilla(Base::SCI_GETCURRENTPOS),
            m_editor.SendScintilla(Base::SCI_GETLENGTH)};
}

void DXCompletionPopup::open()
{
    m_wasAskedFor = true;
    m_isChosen = true;
    m_anchor = -1;
    refresh();
}

void DXCompletionPopup::typed(int character)
{
    const bool continues = character == '.' || continuesName(character);
    if (!continues || character == '.')
        hide();
    if (!continues || isVisible() || !m_opensByItself
        || m_editor.SendScintilla(Base::SCI_GETSELECTIONS) != 1)
        return;
    m_wasAskedFor = false;
    m_isChosen = false;
    m_anchor = -1;
    refresh();
}

// Shows what may stand at the caret, as long as that is in the name that the list was opened for.
void DXCompletionPopup::refresh()
{
    if (!m_completion)
        return;
    m_state = state();
    const auto around = m_editor.surroundings();
    m_answer = m_completion->complete(around.text, around.caret);
    m_caret = around.caret;
    const QStringView before = QStringView(around.text).first(around.caret);
    const long anchor =
        m_editor.SendScintilla(Base::SCI_GETCURRENTPOS)
        - static_cast<long>(before.sliced(m_answer.replaced.location).toUtf8().size());
    const bool isElsewhere = m_anchor >= 0 && anchor != m_anchor;
    const bool isEarly =
        !m_wasAskedFor && !m_answer.isQualified && m_answer.typed.size() < lettersToOpen;
    const bool isWritten = !m_wasAskedFor && m_answer.candidates.size() == 1
                           && m_answer.candidates[0].text == m_answer.typed;
    if (m_answer.candidates.isEmpty() || isElsewhere || isEarly || isWritten) {
        hide();
        return;
    }
    m_anchor = anchor;
    showAnswer();
}

void DXCompletionPopup::showAnswer()
{
    m_model->setCandidates(m_answer.candidates);
    m_isChosen = m_wasAskedFor;
    m_delegate->setChosen(m_isChosen);
    m_list->setCurrentIndex(m_model->index(0));
    if (parentWidget() != m_editor.window())
        setParent(m_editor.window());
    m_list->setFont(m_editor.QWidget::font());
    place();
    show();
    raise();
}

// Below the name's line where there is room, or else above it; the names begin where it begins.
void DXCompletionPopup::place()
{
    int width = leastWidth;
    for (int row = 0; row < m_model->rowCount(); ++row)
        width = std::max(width,
                         DXCompletionDelegate::widthOf(m_model->index(row), m_list->fontMetrics()));
    const int rows = std::min(m_model->rowCount(), mostRows);
    if (m_model->rowCount() > mostRows)
        width += m_list->verticalScrollBar()->sizeHint().width();
    const QSize size(std::min({width, mostWidth, parentWidget()->width()}) + 2,
                     rows * (m_list->fontMetrics().height() + 8) + 2);
    const auto anchor = static_cast<unsigned long>(m_anchor);
    const QPoint name(
        static_cast<int>(m_editor.SendScintilla(Base::SCI_POINTXFROMPOSITION, 0UL, m_anchor)),
        static_cast<int>(m_editor.SendScintilla(Base::SCI_POINTYFROMPOSITION, 0UL, m_anchor)));
    const int lineHeight = static_cast<int>(m_editor.SendScintilla(
        Base::SCI_TEXTHEIGHT, m_editor.SendScintilla(Base::SCI_LINEFROMPOSITION, anchor)));
    const QPoint top = m_editor.viewport()->mapTo(parentWidget(), name);
    const int below = top.y() + lineHeight + 2;
    const bool fitsBelow = below + size.height() <= parentWidget()->height();
    const int y = fitsBelow || top.y() < size.height() ? below : top.y() - size.height() - 2;
    const int x = std::clamp(top.x() - DXCompletionDelegate::textOffset() - 1, 0,
                             std::max(0, parentWidget()->width() - size.width()));
    setGeometry(QRect(QPoint(x, y), size));
}

void DXCompletionPopup::choose(int row)
{
    m_isChosen = true;
    m_delegate->setChosen(true);
    m_list->setCurrentIndex(m_model->index(row));
    m_list->viewport()->update();
}

void DXCompletionPopup::accept()
{
    const int row = m_list->currentIndex().row();
    hide();
    if (row < 0)
        return;
    m_editor.replaceAroundCaret(m_caret - m_answer.replaced.location,
                                m_answer.replaced.end() - m_caret, m_answer.candidates[row].text);
}

bool DXCompletionPopup::isForMe(const QKeyEvent &event) const
{
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (!isVisible() || modifiers != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Tab:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_isChosen;
    default:
        return false;
    }
}

int DXCompletionPopup::rowAfter(int key) const
{
    const int row = m_list->currentIndex().row();
    const int last = m_model->rowCount() - 1;
    switch (key) {
    case Qt::Key_Up:
        return row > 0 ? row - 1 : last;
    case Qt::Key_Down:
        return row < last ? row + 1 : 0;
    case Qt::Key_PageUp:
        return std::max(row - mostRows + 1, 0);
    default:
        return std::min(row + mostRows - 1, last);
    }
}

bool DXCompletionPopup::takesKey(const QKeyEvent &event)
{
    if (!isForMe(event)) {
        const bool breaksLine = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
        if (breaksLine)
            hide();
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Escape:
        hide();
        break;
    case Qt::Key_Tab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        accept();
        break;
    default:
        choose(rowAfter(event.key()));
        break;
    }
    return true;
}

bool DXCompletionPopup::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (watched == &m_editor && isForMe(*static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
        return false;
    case QEvent::KeyPress:
        return watched == &m_editor && takesKey(*static_cast<QKeyEvent *>(event));
    case QEvent::FocusOut:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::Hide:
        hide();
        return false;
    case QEvent::PaletteChange:
        applyTheme();
        return false;
    default:
        return false;
    }
}
