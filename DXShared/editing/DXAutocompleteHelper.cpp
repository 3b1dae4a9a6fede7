// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXAutocompleteHelper.h"

DXAutocompleteHelper::~DXAutocompleteHelper() = default;

QString DXAutocompleteHelper::AutoCompleteUpdatedNotificationName()
{
    return DXProductName(u"autocompleteupdated");
}

QString DXAutocompleteHelper::connectionKey()
{
    return QStringLiteral("connection");
}
