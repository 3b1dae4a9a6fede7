// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresScriptCatalogue.h"

#include "client/DabroDBC.h"
#include "driver/PostgresDefaultSchemaHelper.h"
#include "scripts/PostgresScriptObject.h"
#include "scripts/PostgresScriptObjectCheck.h"
#include "scripts/object/PostgresScriptAlterFunctionQueryLoader.h"
#include "scripts/object/PostgresScriptAlterSequenceQueryLoader.h"
#include "scripts/object/PostgresScriptAlterTriggerQueryLoader.h"
#include "scripts/object/PostgresScriptAlterTypeQueryLoader.h"
#include "scripts/object/PostgresScriptAlterUserEnumerationQueryLoader.h"
#include "scripts/object/PostgresScriptDropDatabaseQueryLoader.h"
#include "scripts/object/PostgresScriptDropFunctionQueryLoader.h"
#include "scripts/object/PostgresScriptDropIndexQueryLoader.h"
#include "scripts/object/PostgresScriptDropSequenceQueryLoader.h"
#include "scripts/object/PostgresScriptDropTypeQueryLoader.h"
#include "scripts/table/PostgresScriptAlterTableQueryLoader.h"
#include "scripts/table/PostgresScriptCreateTableQueryLoader.h"
#include "scripts/table/PostgresScriptDeleteDataFromTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropAndCreateTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropColumnInTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropTableQueryLoader.h"
#include "scripts/table/PostgresScriptInsertToTableQueryLoader.h"
#include "scripts/view/PostgresScriptAlterMateralizedViewQueryLoader.h"
#include "scripts/view/PostgresScriptAlterViewQueryLoader.h"
#include "scripts/view/PostgresScriptCreateViewQueryLoader.h"
#include "scripts/view/PostgresScriptDropAndCreateViewQueryLoader.h"
#include "scripts/view/PostgresScriptDropViewQueryLoader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using Object = PostgresScriptObject;
using Loader = std::shared_ptr<DXQueryLoader>;
using MakeLoader = Loader (*)(const Object &object, const QStringList &values);

struct Script
{
    QLatin1String name;
    MakeLoader make;
};

struct ScriptedKind
{
    QLatin1String name;
    QLatin1String object;
    Object::Form form;
    QList<Script> scripts;
};

// For loaders that take a name and its schema, in this order.
template<typename Of>
Loader named(const Object &object, const QStringList &)
{
    return std::make_shared<Of>(typename Of::Init{object.name, object.schema});
}

// For loaders that take a name alone.
template<typename Of>
Loader unqualified(const Object &object, const QStringList &)
{
    return std::make_shared<Of>(object.name);
}

template<typename Of, bool isMaterialized>
Loader view(const Object &object, const QStringList &)
{
    return std::make_shared<Of>(typename Of::Init{
        .view = object.name, .schema = object.schema, .isMaterialized = isMaterialized});
}

Loader insertRow(const Object &object, const QStringList &)
{
    return std::make_shared<PostgresScriptInsertToTableQueryLoader>(
        QStringList{object.schema, object.name});
}

Loader deleteRow(const Object &object, const QStringList &values)
{
    QStringList columns;
    QList<DXValue> row;
    for (const QString &each : values) {
        columns += each.section(u'=', 0, 0);
        row += DXValue(each.section(u'=', 1));
    }
    return std::make_shared<PostgresScriptDeleteDataFromTableQueryLoader>(
        object.name, columns, QList<QList<DXValue>>{row});
}

Loader dropColumn(const Object &object, const QStringList &)
{
    using Of = PostgresScriptDropColumnInTableQueryLoader;
    return std::make_shared<Of>(
        Of::Init{.columnName = object.member, .table = object.name, .schema = object.schema});
}

Loader alterFunction(const Object &object, const QStringList &)
{
    using Of = PostgresScriptAlterFunctionQueryLoader;
    return std::make_shared<Of>(
        Of::Init{.function = object.schema + u'.' + object.name, .overload = object.arguments});
}

Loader dropFunction(const Object &object, const QStringList &)
{
    using Of = PostgresScriptDropFunctionQueryLoader;
    return std::make_shared<Of>(
        Of::Init{.function = object.name, .overload = object.arguments, .schema = object.schema});
}

Loader alterTrigger(const Object &object, const QStringList &)
{
    using Of = PostgresScriptAlterTriggerQueryLoader;
    return std::make_shared<Of>(
        Of::Init{.triggerName = object.member, .schema = object.schema, .table = object.name});
}

QList<Script> tableScripts()
{
    return {{"create"_L1, named<PostgresScriptCreateTableQueryLoader>},
            {"alter"_L1, named<PostgresScriptAlterTableQueryLoader>},
            {"drop"_L1, named<PostgresScriptDropTableQueryLoader>},
            {"drop-and-create"_L1, named<PostgresScriptDropAndCreateTableQueryLoader>},
            {"insert"_L1, insertRow}};
}

template<bool isMaterialized>
QList<Script> viewScripts(MakeLoader alter)
{
    return {
        {"create"_L1, view<PostgresScriptCreateViewQueryLoader, isMaterialized>},
        {"alter"_L1, alter},
        {"drop"_L1, view<PostgresScriptDropViewQueryLoader, isMaterialized>},
        {"drop-and-create"_L1, view<PostgresScriptDropAndCreateViewQueryLoader, isMaterialized>}};
}

template<typename Alter, typename Drop>
QList<Script> alterAndDrop()
{
    return {{"alter"_L1, named<Alter>}, {"drop"_L1, named<Drop>}};
}

const QList<ScriptedKind> &scriptedKinds()
{
    using Form = Object::Form;
    static const QList<ScriptedKind> kinds{
        {"table"_L1, "[SCHEMA.]TABLE"_L1, Form::SchemaAndName, tableScripts()},
        {"row"_L1, "TABLE COLUMN=VALUE..."_L1, Form::Name, {{"delete"_L1, deleteRow}}},
        {"column"_L1,
         "[SCHEMA.]TABLE.COLUMN"_L1,
         Form::SchemaNameAndMember,
         {{"drop"_L1, dropColumn}}},
        {"view"_L1, "[SCHEMA.]VIEW"_L1, Form::SchemaAndName,
         viewScripts<false>(unqualified<PostgresScriptAlterViewQueryLoader>)},
        {"materialized-view"_L1, "[SCHEMA.]VIEW"_L1, Form::SchemaAndName,
         viewScripts<true>(named<PostgresScriptAlterMateralizedViewQueryLoader>)},
        {"sequence"_L1, "[SCHEMA.]SEQUENCE"_L1, Form::SchemaAndName,
         alterAndDrop<PostgresScriptAlterSequenceQueryLoader,
                      PostgresScriptDropSequenceQueryLoader>()},
        {"function"_L1,
         "[SCHEMA.]FUNCTION(ARGUMENTS)"_L1,
         Form::SchemaAndName,
         {{"alter"_L1, alterFunction}, {"drop"_L1, dropFunction}}},
        {"trigger"_L1,
         "[SCHEMA.]TABLE.TRIGGER"_L1,
         Form::SchemaNameAndMember,
         {{"alter"_L1, alterTrigger}}},
        {"type"_L1, "[SCHEMA.]TYPE"_L1, Form::SchemaAndName,
         alterAndDrop<PostgresScriptAlterTypeQueryLoader, PostgresScriptDropTypeQueryLoader>()},
        {"enumeration"_L1, "[SCHEMA.]TYPE"_L1, Form::SchemaAndName,
         alterAndDrop<PostgresScriptAlterUserEnumerationQueryLoader,
                      PostgresScriptDropTypeQueryLoader>()},
        {"index"_L1,
         "[SCHEMA.]INDEX"_L1,
         Form::SchemaAndName,
         {{"drop"_L1, named<PostgresScriptDropIndexQueryLoader>}}},
        {"database"_L1,
         "DATABASE"_L1,
         Form::Name,
         {{"drop"_L1, unqualified<PostgresScriptDropDatabaseQueryLoader>}}}};
    return kinds;
}

template<typename Named>
const Named *find(const QList<Named> &list, const QString &name)
{
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const Named &each) { return each.name == name; });
    return found == list.end() ? nullptr : &*found;
}

bool refuse(DXError *error, const QString &text)
{
    DXError::report(error, DXError(QStringLiteral("postgres.scriptCatalogue"), 0, text));
    return false;
}

// The kind of a request, or nothing and an error.
const ScriptedKind *kindOf(const DXScriptCatalogue::Request &request, DXError *error)
{
    const ScriptedKind *kind = find(scriptedKinds(), request.kind);
    if (!kind)
        refuse(error,
               QStringLiteral("There are no scripts for the kind \"%1\".").arg(request.kind));
    return kind;
}

// The object of a request, in the default schema where it names none; nothing, and an error, for a
// text that names none.
std::optional<Object> objectOf(const DXScriptCatalogue::Request &request, const ScriptedKind &kind,
                               const DabroDBC &details, DXError *error)
{
    auto object = Object::parse(request.object, kind.form);
    if (!object)
        refuse(error, QStringLiteral("\"%1\" names no %2: write %3.")
                          .arg(request.object, request.kind, kind.object));
    else if (object->schema.isNull() && kind.form != Object::Form::Name)
        object->schema = PostgresDefaultSchemaHelper::sharedInstance().schemaForDBC(details);
    return object;
}

} // namespace

QList<DXScriptCatalogue::Kind> PostgresScriptCatalogue::kinds() const
{
    QList<Kind> kinds;
    for (const ScriptedKind &each : scriptedKinds()) {
        QStringList scripts;
        for (const Script &script : each.scripts)
            scripts += script.name;
        kinds += {.name = each.name, .object = each.object, .scripts = scripts};
    }
    return kinds;
}

Loader PostgresScriptCatalogue::createLoader(const Request &request, const DabroDBC &details,
                                             DXError *error) const
{
    const ScriptedKind *kind = kindOf(request, error);
    if (!kind)
        return nullptr;
    const Script *script = find(kind->scripts, request.script);
    if (!script) {
        refuse(error, QStringLiteral("There is no script \"%1\" for a %2.")
                          .arg(request.script, request.kind));
        return nullptr;
    }
    const auto object = objectOf(request, *kind, details, error);
    return object ? script->make(*object, request.values) : nullptr;
}

bool PostgresScriptCatalogue::objectExists(const Request &request, const DabroDBC &details,
                                           DXError *error) const
{
    const ScriptedKind *kind = kindOf(request, error);
    const auto object = kind ? objectOf(request, *kind, details, error) : std::nullopt;
    return object && PostgresScriptObjectCheck::exists(*object, request.kind, details, error);
}
