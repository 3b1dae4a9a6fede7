// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliCompletion.h"

#include "cli/CliConsole.h"
#include "cli/CliExitStatus.h"
#include "cli/CliText.h"
#include "client/DabroDBC.h"
#include "core/DXNotificationCenter.h"
#include "editing/DXAutocompleteHelper.h"

namespace
{

QLatin1String typeName(DXDatabaseAutocompleteEntry::CompletionType type)
{
    using Type = DXDatabaseAutocompleteEntry::CompletionType;
    switch (type) {
    case Type::Schema:
        return QLatin1String("schema");
    case Type::Table:
        return QLatin1String("table");
    case Type::Column:
        return QLatin1String("column");
    }
    return {};
}

} // namespace

CliCompletion::CliCompletion(const Init &init)
    : m_init(init)
    , m_helper(init.details->sharedAutocompleteHelper())
{ }

CliCompletion::~CliCompletion() = default;

void CliCompletion::start()
{
    if (!m_helper) {
        m_init.console.error(u"The driver completes no names.");
        m_init.done(CliExitUsage);
        return;
    }
    m_updates = DXNotificationCenter::sharedInstance().observe(
        DXAutocompleteHelper::AutoCompleteUpdatedNotificationName(),
        [this](const auto &) { loaded(); });
    m_helper->requestEntriesForDatabaseConnectionDetails(*m_init.details);
}

void CliCompletion::loaded()
{
    const DabroDBC &details = *m_init.details;
    const auto schemas = m_helper->schemasForDatabaseConnectionDetails(details);
    if (!schemas) {
        m_init.console.error(u"The names could not be loaded.");
        m_init.done(CliExitStatementFailed);
        return;
    }
    const qsizetype dot = m_init.prefix.lastIndexOf(u'.');
    if (dot >= 0) {
        const auto entries =
            m_helper->entriesForDatabaseConnectionDetails(details, m_init.prefix.first(dot));
        print(entries.value_or(DXDatabaseAutocompleteEntry::List()), m_init.prefix.sliced(dot + 1));
    } else {
        print(*schemas, m_init.prefix);
        print(*m_helper->tablesForDatabaseConnectionDetails(details), m_init.prefix);
        print(*m_helper->columnsForDatabaseConnectionDetails(details), m_init.prefix);
    }
    m_init.done(CliExitOk);
}

void CliCompletion::print(const DXDatabaseAutocompleteEntry::List &entries, const QString &prefix)
{
    for (const auto &entry : entries) {
        if (!entry->entryName.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        const QStringList fields{
            CliText::printable(entry->entryName), typeName(entry->entryCompletionType),
            CliText::printable(entry->entryParentDisplay), CliText::printable(entry->entryDetails)};
        m_init.console.output().write((fields.join(u'\t') + u'\n').toUtf8());
    }
}
