// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXNotificationCenter.h"
#include "editing/DXAutocompleteHelper.h"
#include "support/FakeDBC.h"

#include <QHash>

#include <memory>

/// Names as a driver publishes them, made by hand; those of "public" are found without it. Nothing
/// is loaded before publish().
class FakeAutocompleteHelper final : public DXAutocompleteHelper
{
public:
    using Entry = DXDatabaseAutocompleteEntry;
    using Type = Entry::CompletionType;

    /// Columns are names with their types: "id integer".
    void add(const QString &schemaName, const QString &tableName, const QStringList &columns)
    {
        auto &schema = m_schemaOf[schemaName];
        if (!schema) {
            schema = std::make_shared<Entry>();
            schema->entryName = schemaName;
            m_schemas += schema;
        }
        const auto table = std::make_shared<Entry>();
        table->entryName = tableName;
        table->entryCompletionType = Type::Table;
        table->entryParent = schema;
        table->entryParentDisplay = schemaName;
        schema->entryChildren += table;
        m_tables += table;
        for (const QString &column : columns) {
            const auto entry = std::make_shared<Entry>();
            entry->entryName = column.section(u' ', 0, 0);
            entry->entryDetails = column.section(u' ', 1);
            entry->entryCompletionType = Type::Column;
            entry->entryParent = table;
            entry->entryParentDisplay = schemaName + u'.' + tableName;
            table->entryChildren += entry;
            m_columns += entry;
        }
        if (schemaName == u"public")
            m_columnsOf.insert(tableName.toLower(), table->entryChildren);
    }
    void publish(const QString &key)
    {
        m_isPublished = true;
        DXNotificationCenter::sharedInstance().post(AutoCompleteUpdatedNotificationName(), nullptr,
                                                    {{connectionKey(), key}});
    }

    void requestEntriesForDatabaseConnectionDetails(const DabroDBC &, Update) override { }
    Entries schemasForDatabaseConnectionDetails(const DabroDBC &) const override
    {
        return published(m_schemas);
    }
    Entries tablesForDatabaseConnectionDetails(const DabroDBC &) const override
    {
        return published(m_tables);
    }
    Entries columnsForDatabaseConnectionDetails(const DabroDBC &) const override
    {
        return published(m_columns);
    }
    Entries columnsForDatabaseConnectionDetails(const DabroDBC &,
                                                const QString &inTable) const override
    {
        const auto found = m_columnsOf.constFind(inTable.toLower());
        return found == m_columnsOf.constEnd() ? std::nullopt : Entries(*found);
    }
    Entries entriesForDatabaseConnectionDetails(const DabroDBC &, const QString &) const override
    {
        return std::nullopt;
    }
    QStringList possibleNamesForAlias(const DabroDBC &) const override
    {
        return m_columnsOf.keys();
    }

private:
    Entries published(const Entry::List &entries) const
    {
        return m_isPublished ? Entries(entries) : std::nullopt;
    }

    bool m_isPublished = false;
    QHash<QString, std::shared_ptr<Entry>> m_schemaOf;
    Entry::List m_schemas;
    Entry::List m_tables;
    Entry::List m_columns;
    QHash<QString, Entry::List> m_columnsOf;
};

/// A connection that completes what its helper was given.
class FakeCompletionDBC final : public FakeDBC
{
public:
    FakeCompletionDBC() = default;
    FakeCompletionDBC(const FakeCompletionDBC &other) = default;

    std::shared_ptr<DabroDBC> copy() const override
    {
        return std::make_shared<FakeCompletionDBC>(*this);
    }
    std::shared_ptr<DXAutocompleteHelper> sharedAutocompleteHelper() const override
    {
        return helper;
    }
    QStringList sqlKeywords() const override
    {
        return {u"AND"_qs, u"FROM"_qs, u"GROUP"_qs, u"JOIN"_qs,   u"LEFT"_qs,
                u"ON"_qs,  u"OR"_qs,   u"ORDER"_qs, u"SELECT"_qs, u"WHERE"_qs};
    }
    QStringList sqlFunctions() const override { return {u"coalesce"_qs, u"count"_qs, u"now"_qs}; }

    const std::shared_ptr<FakeAutocompleteHelper> helper =
        std::make_shared<FakeAutocompleteHelper>();
};
