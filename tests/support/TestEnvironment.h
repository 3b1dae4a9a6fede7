// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>

/// Environment variables that a test changes, and that are as before when it ends. Set them while
/// nothing runs in the background. [main]
class TestEnvironment final
{
public:
    TestEnvironment() = default;
    ~TestEnvironment()
    {
        for (auto entry = m_before.cbegin(); entry != m_before.cend(); ++entry)
            put(entry.key(), entry.value());
    }

    /// A null value removes the variable.
    void set(const QByteArray &name, const QByteArray &value)
    {
        if (!m_before.contains(name))
            m_before.insert(name, qEnvironmentVariableIsSet(name.constData())
                                      ? qgetenv(name.constData())
                                      : QByteArray());
        put(name, value);
    }

private:
    Q_DISABLE_COPY_MOVE(TestEnvironment)

    static void put(const QByteArray &name, const QByteArray &value)
    {
        if (value.isNull())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), value);
    }

    QHash<QByteArray, QByteArray> m_before;
};
