// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "ui/DXTheme.h"

#include <QObject>

class QDBusConnection;
class QDBusMessage;

/// Whether the desktop wants light or dark windows, as its portal says and goes on saying: the
/// setting "color-scheme" of "org.freedesktop.appearance" (XDG Desktop Portal, "Settings"). On a
/// desktop without a portal nothing is told. [main]
class DXSHARED_EXPORT DXDesktopColors final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Finds the session's bus in the background, and listens there.
    void listen();
    /// Asks once, without waiting, and listens.
    void listenOn(QDBusConnection bus);

Q_SIGNALS:
    /// What the desktop wants, at first and at each change.
    void told(DXTheme::Appearance appearance);

private:
    Q_SLOT void settingChanged(const QDBusMessage &message);
    void take(const QVariant &value);
};
