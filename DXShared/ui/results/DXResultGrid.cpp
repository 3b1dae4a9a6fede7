// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultGrid.h"

#include "ui/DXTheme.h"
#include "ui/results/DXResultModel.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include <algorithm>

namespace
{

constexpr int sampledRows = 100;
// Tables of 1,600 columns are not to be measured for long.
constexpr int fewestSampledRows = 10;
constexpr int sampledCells = 20'000;
constexpr int narrowest = 40;
constexpr int widest = 360;
constexpr int padding = 16;
// Numbers count up: room for these digits where more rows are to come than were measured.
constexpr int foreseenDigits = 9;

/// NULL is told from the text by its colour and slant.
class CellDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!index.data(DXResultModel::NullRole).toBool())
            return;
        const QColor color = DXTheme::of(option->palette).null;
        option->palette.setColor(QPalette::Text, color);
        option->palette.setColor(QPalette::HighlightedText, color);
        option->font.setItalic(true);
    }
};

} // namespace

DXResultGrid::DXResultGrid(const std::shared_ptr<const DXQueryResultDetails> &details,
                           QWidget *parent)
    : QTableView(parent)
    , m_model(new DXResultModel(details, this))
{
    setModel(m_model);
    setItemDelegate(new CellDelegate(this));
    setAccessibleName(tr("Result"));
    setFrameShape(QFrame::NoFrame);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setCornerButtonEnabled(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setEditTriggers(NoEditTriggers);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsMovable(true);
    connect(this, &QTableView::doubleClicked, this, &DXResultGrid::valueRequested);
    // By what came first; what comes later never moves what somebody reads.
    connect(m_model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first) {
                if (first == 0)
                    fitColumns();
            });
    fitColumns();
}

void DXResultGrid::fitColumns()
{
    const QFontMetrics heading(horizontalHeader()->font());
    const QFontMetrics cell(font());
    const int rows =
        std::min({m_model->rowCount(), sampledRows,
                  std::max(fewestSampledRows, sampledCells / std::max(1, m_model->columnCount()))});
    const bool isSample = rows < m_model->rowCount() || !m_model->details().isFinished();
    const int foreseen = isSample ? cell.horizontalAdvance(QString(foreseenDigits, u'0')) : 0;
    for (int column = 0; column < m_model->columnCount(); ++column) {
        int width =
            heading.horizontalAdvance(m_model->headerData(column, Qt::Horizontal).toString());
        for (int row = 0; row < rows && width < widest; ++row)
            width = std::max(width,
                             cell.horizontalAdvance(m_model->index(row, column).data().toString()));
        if (m_model->isNumeric(column))
            width = std::max(width, foreseen);
        setColumnWidth(column, std::clamp(width + padding, narrowest, widest));
    }
}

DXResultArea DXResultGrid::selectedArea() const
{
    QList<int> order;
    for (int column = 0; column < m_model->columnCount(); ++column)
        order.append(horizontalHeader()->logicalIndex(column));
    const QItemSelection selection = selectionModel()->selection();
    return selection.isEmpty() ? DXResultArea::all(m_model->rowCount(), order)
                               : DXResultArea::selected(selection, order);
}

void DXResultGrid::copy()
{
    Q_EMIT copyRequested();
}

void DXResultGrid::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        copy();
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
             && currentIndex().isValid())
        Q_EMIT valueRequested(currentIndex());
    else
        QTableView::keyPressEvent(event);
}

// Qt moves by one cell with Ctrl, and leaves behind what is selected.
QModelIndex DXResultGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = currentIndex();
    if (!current.isValid() || !(modifiers & Qt::ControlModifier))
        return QTableView::moveCursor(action, modifiers);
    switch (action) {
    case MoveUp:
        return current.siblingAtRow(0);
    case MoveDown:
        return current.siblingAtRow(m_model->rowCount() - 1);
    case MoveLeft:
        return QTableView::moveCursor(MoveHome, Qt::NoModifier);
    case MoveRight:
        return QTableView::moveCursor(MoveEnd, Qt::NoModifier);
    default:
        return QTableView::moveCursor(action, modifiers);
    }
}

QItemSelectionModel::SelectionFlags DXResultGrid::selectionCommand(const QModelIndex &index,
                                                                   const QEvent *event) const
{
    if (event && event->type() == QEvent::KeyPress) {
        const auto *const press = static_cast<const QKeyEvent *>(event);
        if (press->key() >= Qt::Key_Home && press->key() <= Qt::Key_PageDown) {
            const QKeyEvent move(press->type(), press->key(),
                                 press->modifiers() & ~Qt::ControlModifier);
            return QTableView::selectionCommand(index, &move);
        }
    }
    return QTableView::selectionCommand(index, event);
}

int DXResultGrid::sizeHintForColumn(int column) const
{
    return std::min(QTableView::sizeHintForColumn(column),
                    std::max(widest, viewport()->width() - padding));
}
