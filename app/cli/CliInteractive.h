// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <memory>

class CliConsole;

/// Reads statements that somebody types, and hands on each when it is complete. [main]
class CliInteractive final
{
public:
    struct Init
    {
        CliConsole &console;
        /// What stands before the cursor at the beginning of a statement, without the "=> ".
        std::function<QString()> promptName;
        std::function<bool(const QString &text)> isComplete;
        /// Runs a text; resume() is called when that is done.
        std::function<void(const QString &text)> run;
        /// The user has left.
        std::function<void()> left;
    };
    /// Reads from descriptor, a terminal or, in tests, a pipe.
    CliInteractive(const Init &init, int descriptor);
    ~CliInteractive();

    /// Goes on with what was typed meanwhile, then asks for more.
    void resume();
    /// Drops what was typed of a statement, and asks anew.
    void dropText();

private:
    Q_DISABLE_COPY_MOVE(CliInteractive)

    void readInput();
    bool takeLine(const QString &line);
    void ask();
    void leave();

    const Init m_init;
    const int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArray m_input;
    QString m_text;
    bool m_isAtEnd = false;
};
