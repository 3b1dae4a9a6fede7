// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntryFunction.h"

#include "scripts/object/PostgresScriptAlterFunctionQueryLoader.h"
#include "tree/ColumnDetailsTableCellView.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeNaming.h"
#include "tree/PostgresTreeText.h"

PostgresDatabaseTreeEntryFunction::PostgresDatabaseTreeEntryFunction(const Init &init)
    : m_functionName(init.functionName)
    , m_functionOverload(init.overload)
    , m_schema(init.schema)
    , m_shouldDisplaySchema(PostgresTreeNaming::shouldDisplaySchema(init.schema, init.defaultSchema,
                                                                    init.displaySchema))
{
    setDisplayName(init.functionName);
}

QString PostgresDatabaseTreeEntryFunction::displayName() const
{
    return PostgresTreeNaming::displayName(m_shouldDisplaySchema, m_schema, m_functionName);
}

QString PostgresDatabaseTreeEntryFunction::imageName() const
{
    return QStringLiteral("DatabaseTree-StoredProcedure");
}

std::shared_ptr<DXQueryLoader> PostgresDatabaseTreeEntryFunction::queryLoaderForAlter() const
{
    return std::make_shared<PostgresScriptAlterFunctionQueryLoader>(
        PostgresScriptAlterFunctionQueryLoader::Init{.function = m_functionName,
                                                     .overload = m_functionOverload});
}

DXMenu PostgresDatabaseTreeEntryFunction::menu()
{
    return PostgresTreeMenu(*this, QStringLiteral("Test"))
        .newQuery()
        .separator()
        .newFunction(PostgresTreeText::tr("New function"))
        .loaderTab(PostgresTreeText::tr("Alter function"), queryLoaderForAlter())
        .separator()
        .drop(PostgresTreeText::tr("Drop function"),
              &PostgresDatabaseTreeActions::confirmDropFunction)
        .menu();
}

void PostgresDatabaseTreeEntryFunction::cmdDown()
{
    if (const auto helper = contextHelper())
        helper->addQueryTabWithQueryLoader(*this, queryLoaderForAlter());
}

QString PostgresDatabaseTreeEntryFunction::tableCellIdentifier() const
{
    return QStringLiteral("ColumnDetailsTableCellView");
}

void PostgresDatabaseTreeEntryFunction::prepareCell(ColumnDetailsTableCellView &cell) const
{
    cell.columnNameTextField = m_functionName;
    cell.columnDetailsTextField = m_functionOverload.isEmpty() ? QStringLiteral("no overload")
                                                               : u'(' + m_functionOverload + u')';
}
