// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class Connections;
class DXQueryTab;
struct DXTextRecord;

/// Gives tabs that a journal brought back the connection that they had, as soon as the saved
/// connections can be read. Nothing is connected by that. [main]
class RestoredTabs final : public QObject
{
    Q_OBJECT

public:
    explicit RestoredTabs(const Connections &connections, QObject *parent = nullptr);
    ~RestoredTabs() override;

    void add(DXQueryTab *tab, const DXTextRecord &record);

Q_SIGNALS:
    /// A tab has its connection again.
    void reunited();

private:
    struct Waiting
    {
        QPointer<DXQueryTab> tab;
        QString connectionId;
        QString database;
    };

    void update();

    const Connections &m_connections;
    QList<Waiting> m_waiting;
    std::shared_ptr<void> m_observer;
};
