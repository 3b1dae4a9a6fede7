// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXTextRecord.h"
#include "core/DXError.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

class DXQueryTab;
class DXTextJournal;
class Documents;

/// Keeps the texts of a window's tabs on disk as they are typed, and brings them back when the
/// program starts, however it ended. Nothing is connected or run by that. [main]
class DocumentJournal final : public QObject
{
    Q_OBJECT

public:
    explicit DocumentJournal(Documents &documents, QObject *parent = nullptr);
    ~DocumentJournal() override;

    /// Reads in the background what was kept, and opens it in tabs.
    void open();
    bool isOpen() const { return m_journal != nullptr; }
    /// Writes what changed last, before the tabs go. *Result decides*: false, with error set, when
    /// text would be lost with them.
    bool flush(DXError *error);

Q_SIGNALS:
    /// A tab came back, without a connection yet; record tells which it had.
    void restored(DXQueryTab *tab, const DXTextRecord &record);
    /// What cannot be kept or had back, for the user; about names the trouble.
    void failed(const QString &about, const QString &headline, const QString &details);
    /// The trouble is over.
    void settled(const QString &about);

private:
    void opened(std::unique_ptr<DXTextJournal> journal);
    void tellOfWriting(const DXError &error);
    void keep(DXQueryTab *tab);
    void forget(DXQueryTab *tab);

    Documents &m_documents;
    std::unique_ptr<DXTextJournal> m_journal;
    // Changed before the journal was there.
    QSet<DXQueryTab *> m_early;
};
