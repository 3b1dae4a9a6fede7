// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Chooser.h"

#include "ui/DXTheme.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

constexpr int panelWidth = 560;
constexpr int shownRows = 12;
// Trees that load change many times a second.
constexpr auto betweenSearches = std::chrono::milliseconds(250);
constexpr int detailsRole = Qt::UserRole;

/// Draws the details of a choice at the right end of its row.
class ChoiceDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const QString details = index.data(detailsRole).toString();
        const int needed = option.fontMetrics.horizontalAdvance(details);
        QStyleOptionViewItem title(option);
        title.rect.setRight(option.rect.right() - needed - 24);
        QStyleOptionViewItem background(option);
        initStyleOption(&background, index);
        background.text.clear();
        background.icon = {};
        QStyledItemDelegate::paint(painter, option, QModelIndex());
        if (option.state & QStyle::State_Selected)
            painter->fillRect(option.rect, option.palette.highlight());
        QStyledItemDelegate::paint(painter, title, index);
        painter->setPen(DXTheme::of(option.palette).secondaryText);
        painter->drawText(option.rect.adjusted(0, 0, -12, 0), Qt::AlignRight | Qt::AlignVCenter,
                          details);
    }
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return {QStyledItemDelegate::sizeHint(option, index).width(),
                option.fontMetrics.height() + 8};
    }
};

// How well text fits the words: smaller is better, negative is not at all.
qsizetype distance(const QString &text, const QStringList &words)
{
    qsizetype sum = 0;
    for (const QString &word : words) {
        const qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive);
        if (at < 0)
            return -1;
        sum += at;
    }
    return sum;
}

} // namespace

Chooser *Chooser::open(QWidget &window, const QString &prompt, const Source &source)
{
    auto *const chooser = new Chooser(window, prompt, source);
    chooser->m_before = QApplication::focusWidget();
    chooser->QFrame::show();
    chooser->raise();
    chooser->m_field->setFocus();
    return chooser;
}

Chooser::Source Chooser::among(const QList<Choice> &choices)
{
    return [choices](const QString &text, const Answer &answer) {
        const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
        QList<std::pair<qsizetype, Choice>> hits;
        for (const Choice &choice : choices) {
            const qsizetype found = distance(choice.title, words);
            if (found >= 0)
                hits.append({found, choice});
        }
        std::ranges::stable_sort(hits, {}, &std::pair<qsizetype, Choice>::first);
        QList<Choice> best;
        for (const auto &hit : std::as_const(hits))
            best.append(hit.second);
        answer(best);
    };
}

Chooser::Source Chooser::among(const QList<QAction *> &commands)
{
    QList<Choice> choices;
    for (QAction *const action : commands)
        choices.append({.title = action->text().remove(u'&'),
                        .details = action->shortcut().toString(QKeySequence::NativeText),
                        .icon = action->icon(),
                        .isEnabled = action->isEnabled(),
                        .chosen = [action] { action->trigger(); }});
    return among(choices);
}

Chooser::Chooser(QWidget &window, const QString &prompt, const Source &source)
    : QFrame(&window)
    , m_source(source)
    , m_field(new QLineEdit)
    , m_list(new QListWidget)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    m_field->setPlaceholderText(prompt);
    m_field->setAccessibleName(prompt);
    m_field->installEventFilter(this);
    m_list->setAccessibleName(tr("Choices"));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setUniformItemSizes(true);
    m_list->setIconSize(QSize(16, 16));
    m_list->setItemDelegate(new ChoiceDelegate(m_list));
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(8);
    layout->addWidget(m_field);
    layout->addWidget(m_list);

    const int height =
        m_field->sizeHint().height() + 24 + shownRows * (m_list->fontMetrics().height() + 8);
    const int wide = std::min(panelWidth, window.width() - 32);
    setGeometry((window.width() - wide) / 2, 48, wide, std::min(height, window.height() - 64));
    m_again.setSingleShot(true);
    m_again.setInterval(betweenSearches);
    connect(&m_again, &QTimer::timeout, this, [this] { search(Current::Kept); });
    connect(m_field, &QLineEdit::textChanged, this, [this] { search(Current::First); });
    connect(m_list, &QListWidget::itemClicked, this, &Chooser::choose);
    search(Current::First);
}

void Chooser::search(Current current)
{
    const quint64 number = ++m_number;
    m_source(m_field->text(),
             [chooser = QPointer(this), number, current](const QList<Choice> &choices) {
                 if (chooser && chooser->m_number == number)
                     chooser->show(choices, current);
             });
}

void Chooser::searchAgain()
{
    if (!m_again.isActive())
        m_again.start();
}

void Chooser::show(const QList<Choice> &choices, Current current)
{
    const auto nameAt = [this](int row) {
        return row >= 0 ? m_choices[row].title + u'\n' + m_choices[row].details : QString();
    };
    const QString kept = current == Current::Kept ? nameAt(m_list->currentRow()) : QString();
    m_choices = choices;
    m_list->clear();
    for (const Choice &choice : choices) {
        auto *const item = new QListWidgetItem(choice.icon, choice.title, m_list);
        item->setData(detailsRole, choice.details);
        if (!choice.isEnabled)
            item->setFlags(Qt::NoItemFlags);
    }
    move(0);
    for (int row = 0; row < m_list->count() && !kept.isNull(); ++row) {
        if (nameAt(row) == kept)
            m_list->setCurrentRow(row);
    }
}

// To the next row that can be chosen, from where nothing was chosen to the first one.
void Chooser::move(int rows)
{
    const int step = rows < 0 ? -1 : 1;
    int row = std::clamp(m_list->currentRow() + rows, 0, std::max(0, m_list->count() - 1));
    while (row >= 0 && row < m_list->count() && !(m_list->item(row)->flags() & Qt::ItemIsEnabled))
        row += step;
    if (row >= 0 && row < m_list->count())
        m_list->setCurrentRow(row);
}

void Chooser::choose()
{
    const int row = m_list->currentRow();
    const auto chosen = row >= 0 ? m_choices[row].chosen : nullptr;
    leave();
    if (chosen)
        chosen();
}

// The command chosen is for what had the focus.
void Chooser::leave()
{
    const QPointer<QWidget> before = m_before;
    close();
    if (before)
        before->setFocus(Qt::PopupFocusReason);
}

bool Chooser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        close();
    } else if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const QHash<int, std::function<void()>> commands{
            {Qt::Key_Escape, [this] { leave(); }},
            {Qt::Key_Return, [this] { choose(); }},
            {Qt::Key_Enter, [this] { choose(); }},
            {Qt::Key_Down, [this] { move(1); }},
            {Qt::Key_Up, [this] { move(-1); }},
            {Qt::Key_PageDown, [this] { move(shownRows); }},
            {Qt::Key_PageUp, [this] { move(-shownRows); }}};
        if (const auto command = commands.value(key)) {
            if (event->type() == QEvent::KeyPress)
                command();
            event->accept();
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}
