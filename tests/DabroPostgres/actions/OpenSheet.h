// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DXWait.h"
#include "ui/DXFailureView.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryPreviewSheet.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

/// The sheet that is open on a window, as a user sees and uses it. [main]
class OpenSheet final
{
public:
    /// Waits until the window's sheet has loaded; ends the program when none opens.
    explicit OpenSheet(QWidget &window)
    {
        const auto find = [&] {
            m_sheet = window.findChild<DXQueryPreviewSheet *>();
            return m_sheet && !script().isEmpty();
        };
        if (!DXWait::until(find))
            qFatal("No sheet opened");
    }

    QString question() const { return m_sheet->windowTitle(); }
    QString script() const { return m_sheet->findChild<DXSQLEditor *>()->text(); }
    bool shows(const QString &text) const
    {
        const auto labels = m_sheet->findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
            return label->isVisibleTo(m_sheet) && label->text() == text;
        });
    }
    QPushButton *button(const QString &title) const
    {
        const auto buttons = m_sheet->findChildren<QPushButton *>();
        const auto found = std::find_if(buttons.begin(), buttons.end(),
                                        [&](const auto *each) { return each->text() == title; });
        return found == buttons.end() ? nullptr : *found;
    }
    void click(const QString &title) const { QTest::mouseClick(button(title), Qt::LeftButton); }
    bool closes() const
    {
        return DXWait::until([this] { return m_sheet.isNull(); });
    }
    /// Waits until the sheet tells of a failure.
    bool fails() const
    {
        return DXWait::until([this] { return hasFailed(); });
    }
    bool hasFailed() const { return m_sheet->findChild<DXFailureView *>()->isVisible(); }
    QString failureHeadline() const { return m_sheet->findChild<DXFailureView *>()->headline(); }
    QString failureText() const { return m_sheet->findChild<DXFailureView *>()->text(); }

private:
    QPointer<DXQueryPreviewSheet> m_sheet;
};
