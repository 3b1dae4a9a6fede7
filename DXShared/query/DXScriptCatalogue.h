// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QList>
#include <QStringList>

#include <memory>

class DXQueryLoader;
class DabroDBC;

/// The scripts that a driver writes, by the kinds of objects that they are about, for those who
/// name an object in words rather than by a node of the catalogue tree.
class DXSHARED_EXPORT DXScriptCatalogue
{
public:
    struct Kind
    {
        /// Such as "table".
        QString name;
        /// How such an object is named, for the user, such as "[SCHEMA.]TABLE".
        QString object;
        /// Such as "create", in the order to show them.
        QStringList scripts;
    };
    struct Request
    {
        QString kind;
        QString script;
        /// The object's name as the catalogue has it; in double quotes, each doubled inside, what
        /// holds a dot.
        QString object;
        /// A row's values as COLUMN=VALUE, for kinds whose objects are rows.
        QStringList values;
    };

    virtual ~DXScriptCatalogue();

    /// [any]
    virtual QList<Kind> kinds() const = 0;
    /// A loader for the request; nothing, with error set, for what is unknown or named wrongly. The
    /// object need not exist. May ask the server where names without a schema live. [background]
    virtual std::shared_ptr<DXQueryLoader>
    createLoader(const Request &request, const DabroDBC &details, DXError *error) const = 0;
    /// Whether the request's object exists, whatever the script. *Result decides*: false with error
    /// telling what is missing, or why that could not be found out. [background]
    virtual bool objectExists(const Request &request, const DabroDBC &details,
                              DXError *error) const = 0;

protected:
    DXScriptCatalogue() = default;

private:
    Q_DISABLE_COPY_MOVE(DXScriptCatalogue)
};
