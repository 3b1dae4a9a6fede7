// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSSHPrompter.h"

#include "client/ssh/DXSSHTunnel.h"
#include "dispatch/DXDispatch.h"
#include "ui/connection/DXSSHPromptDialog.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>

#include <csignal>

namespace
{

// Nobody else may enter: what is answered there is a secret.
QString folderTemplate()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (base.isEmpty())
        base = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    return base + QStringLiteral("/dabro-XXXXXX");
}

QWidget *windowInFront()
{
    QWidget *const sheet = QApplication::activeModalWidget();
    return sheet ? sheet : QApplication::activeWindow();
}

DXError failure(const QString &text)
{
    return {QStringLiteral("ui.sshPrompter"), 0, text};
}

} // namespace

DXSSHPrompter::DXSSHPrompter(QObject *parent)
    : QObject(parent)
    , m_folder(folderTemplate())
{ }

DXSSHPrompter::~DXSSHPrompter()
{
    DXSSHDelegate::setDefaultAskpass({}, {});
}

bool DXSSHPrompter::install(DXError *error)
{
    DX_ASSERT_MAIN();
    static QPointer<DXSSHPrompter> instance;
    if (instance)
        return true;
    const QString program = askpassProgram();
    if (program.isEmpty()) {
        DXError::report(error,
                        failure(tr("The program dabro-askpass was not found, so SSH cannot ask for "
                                   "passphrases. Install Dabro again.")));
        return false;
    }
    auto prompter = std::unique_ptr<DXSSHPrompter>(new DXSSHPrompter(nullptr));
    if (!prompter->listen(error))
        return false;
    prompter->setParent(QCoreApplication::instance());
    instance = prompter.release();
    DXSSHDelegate::setDefaultAskpass(
        program, {"DABRO_ASKPASS_SOCKET=" + instance->m_server.fullServerName().toLocal8Bit()});
    return true;
}

QString DXSSHPrompter::askpassProgram()
{
    const QString folder = QCoreApplication::applicationDirPath() + u'/';
    const QString name = QStringLiteral("dabro-askpass");
    const QString installed = QStringLiteral(DX_LIBRARY_FOLDER_FROM_PROGRAM "/");
    for (const QString &path : {folder + name, folder + installed + name}) {
        if (QFileInfo(path).isExecutable())
            return path;
    }
    return {};
}

bool DXSSHPrompter::listen(DXError *error)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *const socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] { take(socket); });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            take(socket);
        }
    });
    if (m_folder.isValid() && m_server.listen(m_folder.filePath(QStringLiteral("askpass"))))
        return true;
    DXError::report(error, failure(tr("SSH cannot ask for passphrases: %1")
                                       .arg(m_folder.isValid() ? m_server.errorString()
                                                               : m_folder.errorString())));
    return false;
}

void DXSSHPrompter::take(QLocalSocket *socket)
{
    const QByteArray sent = socket->peek(socket->bytesAvailable());
    const qsizetype end = sent.indexOf('\0');
    if (end < 0)
        return;
    socket->skip(sent.size());
    const qsizetype line = sent.indexOf('\n');
    const QByteArrayList header = sent.first(qMax<qsizetype>(line, 0)).split(' ');
    m_questions.append({.socket = socket,
                        .asker = header.value(0),
                        .hint = header.value(1),
                        .text = QString::fromLocal8Bit(sent.mid(line + 1, end - line - 1))});
    askNext();
}

void DXSSHPrompter::askNext()
{
    while (!m_window && !m_questions.isEmpty()) {
        const Question question = m_questions.takeFirst();
        if (question.socket && !answerFromMemory(question))
            askWindow(question);
    }
}

// A process that asks the same again was given the wrong answer. Others may have been given it too,
// and take the next one, which the user typed meanwhile.
bool DXSSHPrompter::answerFromMemory(const Question &question)
{
    const auto remembered = m_remembered.constFind(question.text);
    if (remembered == m_remembered.constEnd())
        return false;
    if (m_given.value(question.text).value(question.asker) == remembered->number) {
        m_remembered.erase(remembered);
        return false;
    }
    answer(question, remembered->answer, remembered->number);
    return true;
}

void DXSSHPrompter::askWindow(const Question &question)
{
    using Attempt = DXSSHPromptDialog::Attempt;
    const bool isAgain = m_given.value(question.text).contains(question.asker);
    auto *const window = new DXSSHPromptDialog(
        question.hint, question.text, isAgain ? Attempt::Again : Attempt::First, windowInFront());
    m_window = window;
    window->setAttribute(Qt::WA_DeleteOnClose);
    // ssh takes its question back when it ends, or when a security key was touched.
    connect(question.socket, &QLocalSocket::disconnected, window, &QDialog::reject);
    connect(window, &QDialog::finished, this, [this, window, question](int result) {
        m_window = nullptr;
        if (result == QDialog::Accepted) {
            ++m_lastNumber;
            if (window->isToBeRemembered())
                m_remembered.insert(question.text,
                                    {.answer = window->answer(), .number = m_lastNumber});
            answer(question, window->answer(), m_lastNumber);
        } else {
            refuse(question);
        }
        askNext();
    });
    window->open();
}

void DXSSHPrompter::answer(const Question &question, const QString &text, int number)
{
    // The system gives the number of a process that has ended to another one.
    QHash<QByteArray, int> &given = m_given[question.text];
    given.removeIf([](const auto &entry) { return ::kill(entry.key().toInt(), 0) != 0; });
    given.insert(question.asker, number);
    if (!question.socket)
        return;
    question.socket->write('Y' + text.toLocal8Bit());
    question.socket->disconnectFromServer();
}

void DXSSHPrompter::refuse(const Question &question)
{
    if (question.socket)
        question.socket->disconnectFromServer();
}
