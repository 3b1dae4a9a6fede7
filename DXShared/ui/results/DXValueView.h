// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXValue.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPlainTextEdit;

/// Shows one value, JSON laid out for reading; of one that is too long to be shown at once the
/// beginning, and says so. What is copied is whole. Stays open beside its window and shows the
/// value that is asked for next. [main]
class DXSHARED_EXPORT DXValueView final : public QDialog
{
    Q_OBJECT

public:
    explicit DXValueView(QWidget *parent = nullptr);

    void showValue(const QString &column, const DXValue &value);

private:
    void update();
    const QString &wholeText() const;

    QLabel *const m_heading;
    QLabel *const m_part;
    QPlainTextEdit *const m_text;
    QCheckBox *const m_layout;
    QString m_raw;
    QString m_indented;
};
