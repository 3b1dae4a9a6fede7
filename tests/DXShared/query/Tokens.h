// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/SQLTokenizer.h"

#include <QList>
#include <QString>
#include <QStringList>

/// The tokens of the whole text.
QList<SQLToken> tokensOf(const QString &text, const SQLMetadataTokenizerOptions &options = {});

/// The tokens' texts, without blanks and comments.
QStringList wordsOf(const QString &text);

/// What is wrong with the tokens of text, or nothing: that they do not cover it without gaps, or
/// that reading it line by line, each from the state that the one before left, gives others.
QString faultOfTokens(const QString &text, const SQLMetadataTokenizerOptions &options = {});
