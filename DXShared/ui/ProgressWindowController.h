// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QWidget;

/// A sheet that tells how far some work is, and lets the user cancel it. Work that ends at once
/// shows none. Owned by shared pointers; without anybody else it lives until endSheet(). [main]
class DXSHARED_EXPORT ProgressWindowController final
    : public std::enable_shared_from_this<ProgressWindowController>
{
public:
    explicit ProgressWindowController(const QString &label);
    ~ProgressWindowController();

    /// What Cancel and Escape do, once; without it they are not offered. Set before the sheet is
    /// begun.
    void setCancelHandler(const std::function<void()> &cancel) { m_cancel = cancel; }
    /// Blocks window with the sheet after a moment, unless it was ended before.
    void beginSheetForWindow(QWidget *window);
    /// Shows how much is done, from 0 to 100; below 0 when that is not known, as in the beginning.
    /// An empty label leaves the one before. The selector is `setProgress:andLabel:`. [any]
    void setProgress(double progress, const QString &andLabel);
    /// Takes the sheet away for good.
    void endSheet();

private:
    Q_DISABLE_COPY_MOVE(ProgressWindowController)

    class Sheet;

    void update(double progress, const QString &label);

    QString m_label;
    double m_progress = -1;
    std::function<void()> m_cancel;
    QPointer<Sheet> m_sheet;
    std::shared_ptr<ProgressWindowController> m_self;
};
