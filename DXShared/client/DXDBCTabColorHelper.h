// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <mutex>

/// The colour of each connection's tabs, as "#RRGGBB". [any]
class DXSHARED_EXPORT DXDBCTabColorHelper final
{
public:
    static DXDBCTabColorHelper &sharedInstance();

    /// The colour that a name suggests: red for production, so that it is not mistaken for anything
    /// else; another one of a fixed set for every other name; null for none.
    static QString colorForAlias(const QString &alias);
    /// Gives the connection its name's colour for as long as the program runs. The selector is
    /// `setColorFromAliasTemporary:forId:`.
    void setColorFromAliasTemporaryForId(const QString &alias, const QString &connectionId);
    /// The colour that the connection's user chose, which goes before its name's; null or empty for
    /// none.
    void setColorForId(const QString &color, const QString &connectionId);
    /// The colours to choose from, the one of production first.
    static QStringList colors();
    /// Null for a connection that was given none.
    QString colorForId(const QString &connectionId) const;

private:
    DXDBCTabColorHelper() = default;
    Q_DISABLE_COPY_MOVE(DXDBCTabColorHelper)

    mutable std::mutex m_mutex;
    QHash<QString, QString> m_colors;
    QHash<QString, QString> m_chosenColors;
};
