// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliGridWriter.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the user asked for on the command line. A plain record.
struct CliOptions
{
    enum class Command { Help, Version, Query, Ping, Script, Complete, Tree, Search };

    Command command = Command::Help;
    /// The command that help is asked for; empty for the program's.
    QString helpTopic;

    /// The connection as one text in the notation of the driver's client library.
    QString connectionText;
    /// The scheme of that text when it is a URI.
    QString scheme;
    /// Identifier or name of the driver to use; empty for the one that fits.
    QString driver;
    /// ssh's "[user@]host[:port]"; empty without a tunnel.
    QString ssh;
    QString sshIdentity;
    QString sshConfig;
    bool asksPassword = false;

    /// What is named behind the URL by commands that take something else than statements.
    QStringList operands;
    /// The script to print; empty for all of the object's kind.
    QString script;
    /// How many levels of the tree to print, and what of each node.
    int depth = 3;
    bool hasMenus = false;
    bool hasKinds = false;

    /// The statements, when they are an argument.
    std::optional<QString> statements;
    /// The file to read them from, "-" for standard input; null when none was named.
    QString file;
    CliFormat format = CliFormat::Table;
    CliGridWriter::Header header = CliGridWriter::Header::Yes;
    bool isQuiet = false;

    /// Reads the arguments behind the program's name. Nothing, with error saying what is wrong,
    /// when they cannot be understood.
    static std::optional<CliOptions> parse(const QStringList &arguments, QString &error);

    /// Every long option of a command, in the order of its help.
    static QStringList optionNames(Command command);
};
