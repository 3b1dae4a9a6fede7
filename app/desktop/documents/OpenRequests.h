// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class Connections;
class DabroDBC;
class Documents;
class DXError;
class DXFailureList;

/// Opens what the command line or a dialog names: files, and connections as URIs or key/value
/// strings. [main]
class OpenRequests final : public QObject
{
    Q_OBJECT

public:
    struct Init
    {
        const Connections &connections;
        Documents &documents;
        DXFailureList &failures;
    };
    explicit OpenRequests(const Init &init, QObject *parent = nullptr);

    /// Opens each, or says why not; kept until begin() was called.
    void open(const QStringList &names);
    /// The drivers, which know what a connection looks like, are there.
    void begin();

Q_SIGNALS:
    void connectionRequested(const std::shared_ptr<DabroDBC> &details);
    /// The user gives up on a text and wants the dialog.
    void dialogRequested();

private:
    void openFile(const QString &path);
    void showUnread(const QString &text, const DXError &error);

    const Init m_init;
    bool m_hasBegun = false;
    QStringList m_early;
};
