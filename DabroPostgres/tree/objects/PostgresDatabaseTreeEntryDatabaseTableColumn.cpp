// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTableColumn.h"

#include "driver/PostgresDatabaseClient.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"
#include "tree/objects/PostgresDatabaseTreeEntrySequence.h"

#include <QRegularExpression>

PostgresDatabaseTreeEntryDatabaseTableColumn::PostgresDatabaseTreeEntryDatabaseTableColumn(
    const Init &init)
    : m_init(init)
{
    setDisplayName(init.columnName);
}

QString
PostgresDatabaseTreeEntryDatabaseTableColumn::sequenceNameOfDefault(const QString &defaultValue)
{
    static const QRegularExpression expression(
        QStringLiteral("(nextval|curval)\\s*\\(+\\s*([^:)]+)"),
        QRegularExpression::CaseInsensitiveOption);
    const auto isQuote = [](QChar character) { return character == u'\'' || character == u'"'; };
    QStringView name = expression.match(defaultValue).capturedView(2);
    while (!name.isEmpty() && isQuote(name.front()))
        name = name.sliced(1);
    while (!name.isEmpty() && isQuote(name.back()))
        name.chop(1);
    return name.isNull() ? QString() : name.toString();
}

QString PostgresDatabaseTreeEntryDatabaseTableColumn::imageName() const
{
    return m_init.isPrimaryKey ? QStringLiteral("DatabaseTree-PK")
                               : QStringLiteral("DatabaseTree-Column");
}

DXMenu PostgresDatabaseTreeEntryDatabaseTableColumn::menu()
{
    using Table = PostgresDatabaseTreeEntryDatabaseTable;
    PostgresTreeMenu menu(*this);
    const auto table = std::dynamic_pointer_cast<Table>(parent());
    if (table && table->tableType() == Table::TableType::Table)
        menu.drop(PostgresTreeText::tr("Drop column"),
                  &PostgresDatabaseTreeActions::confirmDropColumn);
    return menu.menu();
}

std::shared_ptr<DXDatabaseTreeEntry> PostgresDatabaseTreeEntryDatabaseTableColumn::makeChild() const
{
    const auto [schema, object] = PostgresDatabaseClient::splitString(m_init.sequenceName);
    auto sequence = std::make_shared<PostgresDatabaseTreeEntrySequence>(
        PostgresDatabaseTreeEntrySequence::Init{.sequenceName = object,
                                                .schema = schema,
                                                .defaultSchema = m_init.defaultSchema,
                                                .displaySchema = -1});
    sequence->setDisplayName(m_init.sequenceName);
    sequence->setCanDrop(false);
    return sequence;
}
