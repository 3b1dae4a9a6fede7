// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

class DocumentJournal;
class Documents;
class QWidget;
class TableExports;

/// Asks before a window closes where something is lost with it. [main]
class QuitQuestion final : public QObject
{
    Q_OBJECT

public:
    struct Init
    {
        Documents &documents;
        const TableExports &exports;
        DocumentJournal &journal;
    };
    QuitQuestion(const Init &init, QWidget &window);

    /// Keeps the texts on disk. False while the user has to be asked about what cannot be kept, who
    /// then closes the window or leaves it open.
    bool mayClose();

private:
    QStringList losses();
    void ask(const QStringList &losses);

    const Init m_init;
    QWidget &m_window;
    bool m_isAgreed = false;
};
