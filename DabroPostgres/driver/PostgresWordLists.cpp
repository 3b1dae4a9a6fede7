// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresWordLists.h"

#include "core/DXCollation.h"
#include "driver/PostgresPropertyList.h"

namespace
{

QStringList orderedSet(QStringList words)
{
    words.removeDuplicates();
    return DXCollation::sorted(words);
}

} // namespace

const PostgresWordLists &PostgresWordLists::sharedInstance()
{
    static const PostgresWordLists instance;
    return instance;
}

PostgresWordLists::PostgresWordLists()
    : m_keywords(orderedSet(PostgresPropertyList::array(QStringLiteral("PostgresSQLKeywords"))))
    , m_functions(orderedSet(PostgresPropertyList::array(QStringLiteral("PostgresSQLFunctions"))))
    , m_functionsAndKeywords(orderedSet(m_keywords + m_functions))
{ }
