// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/DocumentJournal.h"

#include "client/DXTextJournal.h"
#include "core/DXError.h"
#include "desktop/documents/Documents.h"
#include "dispatch/DXDispatch.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQueryTab.h"

#include <QDir>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace
{
const QLatin1String writingKey("journal");
}

DocumentJournal::DocumentJournal(Documents &documents, QObject *parent)
    : QObject(parent)
    , m_documents(documents)
{
    connect(&documents, &Documents::recordChanged, this, &DocumentJournal::keep);
    connect(&documents, &Documents::removed, this, &DocumentJournal::forget);
}

DocumentJournal::~DocumentJournal() = default;

void DocumentJournal::open()
{
    const QString folder = QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
                               .filePath(QStringLiteral("journal"));
    DXDispatch::background([folder, self = QPointer(this)] {
        DXError error;
        // Handed over in a shared pointer, since what crosses threads has to be copyable.
        const auto journal =
            std::make_shared<std::unique_ptr<DXTextJournal>>(DXTextJournal::open(folder, &error));
        DXDispatch::main([self, journal, error] {
            if (!self)
                return;
            if (*journal)
                self->opened(std::move(*journal));
            else
                self->tellOfWriting(error);
        });
    });
}

void DocumentJournal::opened(std::unique_ptr<DXTextJournal> journal)
{
    m_journal = std::move(journal);
    m_journal->setFailureHandler([this](const DXError &error) { tellOfWriting(error); });
    for (const QString &file : m_journal->unreadFiles())
        Q_EMIT failed(file, tr("A text could not be restored; it is still in %1.").arg(file), {});
    DXQueryTab *const current = m_documents.current();
    for (const DXTextRecord &record : m_journal->records()) {
        if (DXQueryTab *const tab = m_documents.add(record))
            Q_EMIT restored(tab, record);
    }
    if (current)
        m_documents.setCurrentWidget(current);
    for (DXQueryTab *const tab : std::exchange(m_early, {}))
        keep(tab);
}

void DocumentJournal::tellOfWriting(const DXError &error)
{
    if (error)
        Q_EMIT failed(writingKey,
                      tr("What you type is not kept on disk: save it into files before you quit."),
                      error.description().trimmed());
    else
        Q_EMIT settled(writingKey);
}

bool DocumentJournal::flush(DXError *error)
{
    if (m_journal)
        return m_journal->flush(error);
    const bool hasText = std::ranges::any_of(m_early, [this](const DXQueryTab *tab) {
        const bool isInFile = !m_documents.path(*tab).isNull() && !tab->editor().isModified();
        return !isInFile && tab->editor().length() > 0;
    });
    if (hasText)
        DXError::report(error, DXError(QString(), 0, tr("its folder cannot be used")));
    return !hasText;
}

void DocumentJournal::keep(DXQueryTab *tab)
{
    if (!m_journal) {
        m_early.insert(tab);
        return;
    }
    m_journal->changed(m_documents.record(*tab).id,
                       [this, tab] { return m_documents.record(*tab); });
}

void DocumentJournal::forget(DXQueryTab *tab)
{
    m_early.remove(tab);
    if (m_journal)
        m_journal->remove(m_documents.record(*tab).id);
}
