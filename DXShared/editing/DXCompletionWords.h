// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/DXNameIndex.h"

#include <QList>
#include <QString>

class DabroDBC;

/// The key words and functions of a driver's SQL, ready for completion. [any]
class DXCompletionWords final
{
public:
    struct Word
    {
        QString text;
        bool isFunction = false;
    };
    explicit DXCompletionWords(const DabroDBC &details);

    const Word &at(qsizetype index) const { return m_words[index]; }
    /// As DXNameIndex::find().
    QList<DXNameIndex::Hit> find(const QString &typed, qsizetype limit, bool withFunctions) const;

private:
    QList<Word> m_words;
    DXNameIndex m_index;
};
