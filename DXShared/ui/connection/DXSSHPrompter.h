// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QHash>
#include <QList>
#include <QLocalServer>
#include <QObject>
#include <QPointer>
#include <QTemporaryDir>

#include <memory>

class DXSSHPromptDialog;
class QLocalSocket;

/// Puts what ssh asks while a tunnel opens (passphrases, passwords, keys of unknown hosts) to the
/// user in windows of ours, one at a time, above the window that is active. Passphrases are kept in
/// memory until the program ends when the user says so, so that a pool's connections do not ask
/// again and again. [main]
class DXSHARED_EXPORT DXSSHPrompter final : public QObject
{
    Q_OBJECT

public:
    ~DXSSHPrompter() override;

    /// Lets every tunnel that this program opens from now on ask here, once for the whole program;
    /// further calls do nothing. *Result decides*: without it ssh runs in its batch mode.
    static bool install(DXError *error);

private:
    struct Question
    {
        QPointer<QLocalSocket> socket;
        /// The ssh process that asks.
        QByteArray asker;
        QByteArray hint;
        QString text;
    };

    explicit DXSSHPrompter(QObject *parent);
    static QString askpassProgram();
    bool listen(DXError *error);
    void take(QLocalSocket *socket);
    void askNext();
    void askWindow(const Question &question);
    bool answerFromMemory(const Question &question);
    static void answer(const Question &question, const QString &text);
    static void refuse(const Question &question);

    QTemporaryDir m_folder;
    QLocalServer m_server;
    QList<Question> m_questions;
    QPointer<DXSSHPromptDialog> m_window;
    QHash<QString, QString> m_remembered;
    /// The process that was last given an answer to a text.
    QHash<QString, QByteArray> m_answered;
};
