// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultModel.h"

#include "ui/DXToolTip.h"
#include "ui/results/DXResultText.h"

#include <QLocale>

#include <algorithm>
#include <chrono>

namespace
{

constexpr auto betweenUpdates = std::chrono::milliseconds(33);
// A view's height in pixels is an int; what lies beyond is in the store, but nobody could scroll
// there.
constexpr qsizetype mostRows = 50'000'000;
constexpr int sampledRows = 50;

// What breaks or holds no line is shown as a picture of it.
QChar shownAs(QChar character)
{
    switch (character.unicode()) {
    case u'\t':
        return u' ';
    case u'\n':
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
        return QChar(0x2424);
    default:
        return character < u' ' ? QChar(0x2400 + character.unicode()) : character;
    }
}

QString oneLine(const QString &text)
{
    QString line = text.left(DXResultModel::shownCharacters);
    // Never half of a character.
    if (line.size() < text.size() && line.back().isHighSurrogate())
        line.chop(1);
    std::ranges::transform(line, line.begin(), shownAs);
    return line;
}

QVariant aligned(bool isNumber)
{
    return int(Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft));
}

} // namespace

DXResultModel::DXResultModel(const std::shared_ptr<const DXQueryResultDetails> &details,
                             QObject *parent)
    : QAbstractTableModel(parent)
    , m_details(details)
    , m_columnNames(details->columnNames())
{
    m_timer.setInterval(betweenUpdates);
    connect(&m_timer, &QTimer::timeout, this, &DXResultModel::update);
    m_timer.start();
    update();
}

void DXResultModel::update()
{
    // Asked before the count, so that the last rows are not missed.
    if (m_details->isFinished())
        m_timer.stop();
    const auto rows = m_details->rows();
    const auto count = static_cast<int>(std::min(rows ? rows->rowCount() : qsizetype(0), mostRows));
    if (count == m_rowCount)
        return;
    beginInsertRows({}, m_rowCount, count - 1);
    m_rowCount = count;
    endInsertRows();
}

DXValue DXResultModel::value(int row, int column) const
{
    return m_details->value(row, static_cast<quint32>(column));
}

// As far as the first few rows tell: nobody waits for the last one to see a heading.
bool DXResultModel::isNumeric(int column) const
{
    for (int row = 0; row < std::min(m_rowCount, sampledRows); ++row) {
        if (const DXValue cell = value(row, column); !cell.isNull())
            return cell.isNumber();
    }
    return false;
}

int DXResultModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int DXResultModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columnNames.size());
}

QVariant DXResultModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const auto cell = [&] { return value(index.row(), index.column()); };
    switch (role) {
    case Qt::DisplayRole: {
        const DXValue shown = cell();
        return shown.isNull() ? QStringLiteral("NULL") : oneLine(DXResultText::textOf(shown));
    }
    case NullRole:
        return cell().isNull();
    case Qt::TextAlignmentRole: {
        const DXValue shown = cell();
        return aligned(shown.isNull() ? isNumeric(index.column()) : shown.isNumber());
    }
    default:
        return {};
    }
}

QVariant DXResultModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(QLocale().toString(section + 1)) : QVariant();
    if (role == Qt::DisplayRole)
        return m_columnNames.value(section);
    if (role == Qt::ToolTipRole)
        return DXToolTip::plain(m_columnNames.value(section));
    return role == Qt::TextAlignmentRole ? aligned(isNumeric(section)) : QVariant();
}
