// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresAutocompleteHelper.h"

#include "client/DabroDBC.h"
#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresSystemDatabaseQueries.h"

#include <QSet>

namespace
{

void postUpdated(const QString &key)
{
    DXDispatch::main([key] {
        DXNotificationCenter::sharedInstance().post(
            DXAutocompleteHelper::AutoCompleteUpdatedNotificationName(), nullptr,
            {{DXAutocompleteHelper::connectionKey(), key}});
    });
}

// Turns the rows of the query into entries.
class RowReader final
{
public:
    explicit RowReader(PostgresAutocompleteEntires &entries)
        : m_entries(entries)
    { }

    const QString &defaultSchema() const { return m_defaultSchema; }

    void read(const DatabaseResultSet &row)
    {
        if (m_typeColumn < 0) {
            m_typeColumn = row.indexOfColumn(QStringLiteral("column_type"));
            m_defaultSchema = row.stringForColumnIndex(0).toText();
        }
        const PostgresAutocompleteEntires::Row names{
            .schemaName = shared(row.stringForColumnIndex(1)),
            .tableName = shared(row.stringForColumnIndex(2)),
            .columnName = shared(row.stringForColumnIndex(3)),
            .columnType = shared(row.stringForColumnIndex(static_cast<quint32>(m_typeColumn)))};
        const QLatin1String missing = missingPart(names);
        if (missing.isEmpty())
            m_entries.addRow(names);
        else
            DXLog(QLatin1String("Invalid ") + missing);
    }

private:
    // Most names and types come many times; they share their memory.
    QString shared(const DXValue &value)
    {
        return value.isNull() ? QString() : *m_texts.insert(value.toText());
    }

    QLatin1String missingPart(const PostgresAutocompleteEntires::Row &names) const
    {
        if (names.schemaName.isNull())
            return QLatin1String("schemaName");
        if (names.tableName.isNull())
            return QLatin1String("tableName");
        if (names.columnName.isNull())
            return QLatin1String("columnName");
        if (names.columnType.isNull())
            return QLatin1String("columnDetails");
        return m_defaultSchema.isNull() ? QLatin1String("defaultSchema") : QLatin1String();
    }

    PostgresAutocompleteEntires &m_entries;
    QSet<QString> m_texts;
    QString m_defaultSchema;
    qsizetype m_typeColumn = -1;
};

} // namespace

const std::shared_ptr<PostgresAutocompleteHelper> &PostgresAutocompleteHelper::sharedInstance()
{
    static const auto instance = std::make_shared<PostgresAutocompleteHelper>();
    return instance;
}

void PostgresAutocompleteHelper::requestEntriesForDatabaseConnectionDetails(const DabroDBC &details,
                                                                            Update update)
{
    if (details.database().isEmpty())
        return;
    const QString key = details.description();
    const std::lock_guard lock(m_mutex);
    Loaded &loaded = m_autocompleteEntries[key];
    if (update == Update::IfNeeded && loaded.entries) {
        postUpdated(key);
        DXLog(QStringLiteral("Autocomplete already exists. Nothing to do."));
        return;
    }
    if (update == Update::IfNeeded && loaded.isLoading)
        return;
    loaded.isLoading = true;
    DXDispatch::background(
        [self = shared_from_this(), copy = details.copy(), load = ++loaded.lastLoad] {
            self->doLoadAutocompleteDetails(*copy, load);
        });
}

void PostgresAutocompleteHelper::doLoadAutocompleteDetails(const DabroDBC &details, quint64 load)
{
    QString query =
        PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("List_EntriesForAutocomplete"));
    query.replace(QLatin1String("{TABLE_SCHEMA}"), details.database());
    auto entries = std::make_shared<PostgresAutocompleteEntires>();
    RowReader reader(*entries);
    DXError error;
    PostgresCatalogueReader::read(
        details, query, [&reader](const DatabaseResultSet &row) { reader.read(row); }, &error);
    if (error) {
        PostgresDatabaseClient::reportError(
            error.withDomain(QStringLiteral("postgres.autocomplete.loadEntries")),
            QVariantMap{{QStringLiteral("Query"), query}});
        entries = nullptr;
    } else {
        entries->createCache(reader.defaultSchema());
    }
    finishLoad(details.description(), load, entries);
    DXLog(QStringLiteral("Finished autocomplete query block."));
}

void PostgresAutocompleteHelper::finishLoad(
    const QString &key, quint64 load,
    const std::shared_ptr<const PostgresAutocompleteEntires> &entries)
{
    {
        const std::lock_guard lock(m_mutex);
        Loaded &loaded = m_autocompleteEntries[key];
        if (load != loaded.lastLoad)
            return;
        loaded.isLoading = false;
        if (entries)
            loaded.entries = entries;
    }
    postUpdated(key);
}

std::shared_ptr<const PostgresAutocompleteEntires>
PostgresAutocompleteHelper::entriesFor(const DabroDBC &details) const
{
    const std::lock_guard lock(m_mutex);
    return m_autocompleteEntries.value(details.description()).entries;
}

DXAutocompleteHelper::Entries
PostgresAutocompleteHelper::schemasForDatabaseConnectionDetails(const DabroDBC &details) const
{
    const auto entries = entriesFor(details);
    return entries ? Entries(entries->schemas()) : std::nullopt;
}

DXAutocompleteHelper::Entries
PostgresAutocompleteHelper::tablesForDatabaseConnectionDetails(const DabroDBC &details) const
{
    const auto entries = entriesFor(details);
    return entries ? Entries(entries->tables()) : std::nullopt;
}

DXAutocompleteHelper::Entries
PostgresAutocompleteHelper::columnsForDatabaseConnectionDetails(const DabroDBC &details) const
{
    const auto entries = entriesFor(details);
    return entries ? Entries(entries->columns()) : std::nullopt;
}

DXAutocompleteHelper::Entries
PostgresAutocompleteHelper::columnsForDatabaseConnectionDetails(const DabroDBC &details,
                                                                const QString &inTable) const
{
    const auto entries = entriesFor(details);
    return entries ? entries->columnsForTableAndOrSchema(
               PostgresDatabaseClient::unescapeTableNameIfRequired(inTable))
                   : std::nullopt;
}

DXAutocompleteHelper::Entries
PostgresAutocompleteHelper::entriesForDatabaseConnectionDetails(const DabroDBC &details,
                                                                const QString &withParent) const
{
    const auto entries = entriesFor(details);
    return entries ? entries->entriesForTableAndOrSchema(
               PostgresDatabaseClient::unescapeTableNameIfRequired(withParent))
                   : std::nullopt;
}

QStringList PostgresAutocompleteHelper::possibleNamesForAlias(const DabroDBC &details) const
{
    const auto entries = entriesFor(details);
    return entries ? entries->allPossibleNamesForAlias() : QStringList();
}
