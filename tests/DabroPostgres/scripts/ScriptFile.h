// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A file of tests/sql/scripts; its README tells what the sections mean.
struct ScriptFile
{
    struct Script
    {
        QString kind;
        QString script;
        QString object;
        QStringList values;
    };
    struct Step
    {
        QString verb;
        Script script;
        /// Part of the server's message, for "refuse".
        QString message;
    };
    struct Text
    {
        Script script;
        QString text;
    };

    QString both;
    QString objects;
    QList<Step> steps;
    QStringList lost;
    QStringList gained;
    QList<Text> texts;

    /// Fails the running test when there is no such file or it cannot be understood.
    static ScriptFile read(const QString &path);
    /// A script as the files show it.
    static QString shown(const QString &script);
};
