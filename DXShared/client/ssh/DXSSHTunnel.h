// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnelModel.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QByteArrayList>

#include <chrono>
#include <memory>

/// What the tunnel asks of whoever opens a connection. Called on the thread that opens it.
class DXSHARED_EXPORT DXSSHDelegate
{
public:
    virtual ~DXSSHDelegate();

    /// What asks the user, for every delegate that does not say otherwise, and for tunnels that are
    /// opened without one: a program with windows sets it once. [any]
    static void setDefaultAskpass(const QString &program, const QByteArrayList &environment);

    /// The program that asks the user for passphrases and host-key confirmations, as SSH_ASKPASS
    /// (ssh(1)) wants it. Empty: nothing may be asked, and ssh runs in its batch mode.
    virtual QString sshAskpassProgram() const;
    /// What that program finds in its environment besides, as NAME=value.
    virtual QByteArrayList sshAskpassEnvironment() const;
    /// True to give up waiting for the tunnel; polled while it opens.
    virtual bool sshShouldCancel() const { return false; }
    /// A line that ssh printed on standard error while the tunnel opened.
    virtual void sshPrinted(const QString &line);
};

/// A forwarded TCP port on 127.0.0.1, kept by a child process of the system's OpenSSH client. The
/// child dies with this object, with disconnect(), and with our process however that ends.
class DXSHARED_EXPORT DXSSHTunnel final
{
public:
    /// Opens a tunnel to targetHost:targetPort as seen from the SSH server, and returns once it
    /// carries connections. Nothing, with error set to what ssh said last, when it fails or the
    /// delegate cancels. [background]
    static std::unique_ptr<DXSSHTunnel> open(const DXSSHTunnelModel &model,
                                             const QString &targetHost, quint16 targetPort,
                                             DXSSHDelegate *delegate, DXError *error);
    ~DXSSHTunnel();

    /// The local end of the forwarded port. [any]
    quint16 localPort() const;
    /// Whether the child still runs. [any]
    bool isOpen() const;
    /// Why the child ended, when it does within limit or has already; else empty. [background]
    QString endingWithin(std::chrono::milliseconds limit) const;
    /// What ssh printed on standard error since it opened, such as a refused target; the last lines
    /// of it. [any]
    QString standardError() const;
    /// The details key under which an error of a connection through a tunnel holds standardError().
    static QString standardErrorKey();
    /// Ends the child and waits for it; nothing when it has ended already. [any]
    void disconnect();

private:
    struct Private;
    explicit DXSSHTunnel(std::unique_ptr<Private> d);
    Q_DISABLE_COPY_MOVE(DXSSHTunnel)

    std::unique_ptr<Private> d;
};
