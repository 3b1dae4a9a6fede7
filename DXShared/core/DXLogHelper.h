// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QVariantMap>

#include <functional>
#include <memory>

/// The host's log: diagnostics go to the system log as plain lines, errors for the user also to
/// whoever shows them. Never given a password: callers mask secrets before they log. [any]
class DXSHARED_EXPORT DXLogHelper final
{
public:
    /// What is told of every logged error, on the thread that logged it.
    using ErrorObserver = std::function<void(const DXError &error, const QVariantMap &details)>;

    static DXLogHelper &sharedInstance();

    /// Logs an error that the user should be able to read. details tells more by key: "Query" holds
    /// the SQL text that failed. The selector is `logError:withDetails:`.
    void logError(const DXError &error, const QVariantMap &details = {});

    /// Writes one diagnostic line to the system log (the category "org.dabro" of Qt's logging, so
    /// QT_LOGGING_RULES filters it). Line breaks inside are kept.
    void logLine(const QString &line);

    /// Adds an observer of logged errors; it stays until the returned object is destroyed, which
    /// waits for a call-back under way on another thread.
    [[nodiscard]] std::shared_ptr<void> observeErrors(ErrorObserver observer);
    /// Adds an observer of diagnostic lines, under the same terms.
    [[nodiscard]] std::shared_ptr<void>
    observeLines(std::function<void(const QString &line)> observer);

private:
    DXLogHelper();
    ~DXLogHelper();
    Q_DISABLE_COPY_MOVE(DXLogHelper)

    struct Observers;
    std::unique_ptr<Observers> d;
};

/// Shorthand for DXLogHelper::sharedInstance().logLine(line). [any]
DXSHARED_EXPORT void DXLog(const QString &line);
