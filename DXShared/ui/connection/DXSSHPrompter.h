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
    void answer(const Question &question, const QString &text, int number);
    static void refuse(const Question &question);

    QTemporaryDir m_folder;
    QLocalServer m_server;
    QList<Question> m_questions;
    QPointer<DXSSHPromptDialog> m_window;
    struct Remembered
    {
        QString answer;
        int number = 0;
    };
    /// By the text of the question.
    QHash<QString, Remembered> m_remembered;
    /// The number of the answer that each process was given last, by the text of the question.
    QHash<QString, QHash<QByteArray, int>> m_given;
    int m_lastNumber = 0;
};
