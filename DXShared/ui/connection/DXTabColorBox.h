// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QComboBox>

/// The colour of a connection's tabs: the one that its name suggests, or one of the fixed set.
/// [main]
class DXSHARED_EXPORT DXTabColorBox final : public QComboBox
{
    Q_OBJECT

public:
    explicit DXTabColorBox(QWidget *parent = nullptr);

    /// The chosen colour as "#RRGGBB"; empty for the one that the name suggests.
    QString color() const;
    void setColor(const QString &color);
    /// The name whose suggestion the first entry shows.
    void setAlias(const QString &alias);
    /// The colour that the tabs get; null for none.
    QString effectiveColor() const;

    /// A dot of that colour; only its outline for no colour.
    static QIcon dot(const QString &color, const QPalette &palette);

private:
    QString m_alias;
};
