// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

/// Judges the include lines of a source by a table that says which folder may see which. [any]
class IncludeRules final
{
public:
    struct Init
    {
        /// The table: lines of a folder, a colon, and the folders and @libraries it may see.
        QString table;
        /// Whether the tree has a file of this path, as seen from the tree's root.
        std::function<bool(const QString &path)> exists;
        /// Whether this name in angle brackets is a header of Qt Widgets.
        std::function<bool(const QString &name)> isWidgetHeader;
    };
    explicit IncludeRules(Init init);

    /// One text for each include of the source that breaks a rule, led by path and line number.
    QStringList faults(const QString &path, const QString &text) const;

private:
    QString fault(const QString &path, const QString &line) const;
    QString faultOfOwnHeader(const QString &folder, const QString &name) const;
    QString faultOfLibraryHeader(const QString &folder, const QString &name) const;
    QStringList filesNamed(const QString &name) const;
    bool mayUse(const QString &folder, const QString &used) const;

    Init m_init;
    QHash<QString, QSet<QString>> m_allowed;
};
