// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QPushButton>

/// A button for what cannot be taken back: in the colour of danger, and never the one that Return
/// presses. [main]
class DXSHARED_EXPORT DXDangerButton final : public QPushButton
{
    Q_OBJECT

public:
    explicit DXDangerButton(const QString &text, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
