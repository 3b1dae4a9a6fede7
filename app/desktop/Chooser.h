// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QIcon>
#include <QList>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>

class QAction;
class QLineEdit;
class QListWidget;

/// A field with a list under it, over the top of a window: type some of what is meant, choose with
/// the arrows and Return. Esc or a click elsewhere closes it. [main]
class Chooser final : public QFrame
{
    Q_OBJECT

public:
    struct Choice
    {
        QString title;
        /// Shown to the right, in a quieter colour.
        QString details;
        QIcon icon = {};
        /// False for what cannot be chosen now; it is shown all the same.
        bool isEnabled = true;
        std::function<void()> chosen = {};
    };
    /// Gives the choices for what was typed, at once or later and then through the call-back; one
    /// that comes when something else was typed is dropped.
    using Answer = std::function<void(const QList<Choice> &choices)>;
    using Source = std::function<void(const QString &text, const Answer &answer)>;

    /// Opens over window and deletes itself when it is closed.
    static Chooser *open(QWidget &window, const QString &prompt, const Source &source);
    /// A source of fixed choices: those that hold every typed word, best first.
    static Source among(const QList<Choice> &choices);
    /// The same for commands, by their titles, each with its key.
    static Source among(const QList<QAction *> &commands);

    /// Asks the source anew, soon, since it may know more by now; the current choice stays so.
    void searchAgain();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Chooser(QWidget &window, const QString &prompt, const Source &source);
    enum class Current { First, Kept };
    void search(Current current);
    void show(const QList<Choice> &choices, Current current);
    void choose();
    void leave();
    void move(int rows);

    const Source m_source;
    QPointer<QWidget> m_before;
    QLineEdit *const m_field;
    QListWidget *const m_list;
    QList<Choice> m_choices;
    quint64 m_number = 0;
    QTimer m_again;
};
