// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresTreeNaming.h"

bool PostgresTreeNaming::shouldDisplaySchema(const QString &schema, const QString &defaultSchema,
                                             int displaySchema)
{
    if (displaySchema == -1)
        return schema.isNull() || defaultSchema.isNull() || schema != defaultSchema;
    return displaySchema == 1;
}

QString PostgresTreeNaming::displayName(bool shouldDisplaySchema, const QString &schema,
                                        const QString &name)
{
    return shouldDisplaySchema && !schema.isEmpty() ? schema + u'.' + name : name;
}
