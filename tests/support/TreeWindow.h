// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DabroDBC.h"
#include "query/DXQueryLoader.h"
#include "tree/DXDatabaseTreeViewController.h"

#include <QStringList>

#include <memory>

/// A window around a catalogue tree that notes what it is asked for, and on which database.
class TreeWindow final : public DXDatabaseTreeViewController,
                         public DXDatabaseTreeViewControllerDelegate
{
public:
    using Details = std::shared_ptr<DabroDBC>;
    using Loader = std::shared_ptr<DXQueryLoader>;

    QWidget *targetWindow() override { return target; }
    void addNewQueryTab(const QString &query, const Details &details, QueryTab mode) override
    {
        note(mode == QueryTab::Open ? u"tab"_qs : u"run"_qs, details, query);
    }
    void addNewQueryTabWithLoader(const Loader &loader, const Details &details,
                                  QueryTab mode) override
    {
        note(mode == QueryTab::Open ? u"load"_qs : u"load and run"_qs, details);
        lastLoader = loader;
    }
    void sendScript(const Loader &loader, const Details &details, ScriptDestination to) override
    {
        note(to == ScriptDestination::Clipboard ? u"clipboard"_qs : u"file"_qs, details);
        lastLoader = loader;
    }
    void alterTableNamed(const QString &table, const QString &schema,
                         const Details &details) override
    {
        note(u"alter"_qs, details, schema + u'.' + table);
    }
    void openConnectionDialog(const Details &details) override { note(u"connection"_qs, details); }
    void disconnectFrom(const Details &details) override { note(u"disconnect"_qs, details); }
    void importInto(const Details &details) override { note(u"import"_qs, details); }
    void exportTableAsCSV(const QString &path, const Details &details) override
    {
        note(u"export"_qs, details, path);
    }
    void beep() override { asked += u"beep"_qs; }

    std::shared_ptr<DXDatabaseTreeEntry> currentlySelectedDatabaseTreeEntry() const override
    {
        return {};
    }
    QList<std::shared_ptr<DXDatabaseTreeEntry>> allRoots() const override { return {}; }
    void deselectAll() override { }
    void reloadData() override { }
    void doRefreshDatabaseTreeEntry(const std::shared_ptr<DXDatabaseTreeEntry> &) override { }
    DXDatabaseTreeViewControllerDelegate &delegate() override { return *this; }

    QStringList asked;
    QWidget *target = nullptr;
    Loader lastLoader;

private:
    void note(const QString &what, const Details &details, const QString &text = {})
    {
        asked += u"%1 %2 %3"_qs.arg(what, details->database(), text).trimmed();
    }
};
