// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliScripts.h"

#include "cli/CliConsole.h"
#include "cli/CliExitStatus.h"
#include "client/DabroDBC.h"
#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"

CliScripts::CliScripts(const Init &init)
    : m_init(init)
    , m_failures(DXLogHelper::sharedInstance().observeErrors(
          [this](const DXError &error, const QVariantMap &) {
              const std::lock_guard lock(m_mutex);
              m_failure = error;
          }))
{ }

void CliScripts::start()
{
    const auto catalogue = m_init.details->createScriptCatalogue();
    if (!catalogue) {
        fail(CliExitUsage, QStringLiteral("The driver writes no scripts."));
        return;
    }
    m_names = scriptNames(*catalogue);
    if (!m_names.isEmpty())
        makeLoaders(catalogue, m_names);
}

QStringList CliScripts::scriptNames(const DXScriptCatalogue &catalogue)
{
    const QList<DXScriptCatalogue::Kind> kinds = catalogue.kinds();
    QStringList known;
    for (const DXScriptCatalogue::Kind &kind : kinds) {
        known += kind.name;
        if (kind.name != m_init.request.kind)
            continue;
        if (m_init.request.script.isEmpty() || kind.scripts.contains(m_init.request.script))
            return m_init.request.script.isEmpty() ? kind.scripts
                                                   : QStringList(m_init.request.script);
        fail(CliExitUsage,
             QStringLiteral("There is no script \"%1\" for a %2: use %3.")
                 .arg(m_init.request.script, kind.name, kind.scripts.join(QLatin1String(", "))));
        return {};
    }
    fail(CliExitUsage, QStringLiteral("There is no kind of object \"%1\": use %2.")
                           .arg(m_init.request.kind, known.join(QLatin1String(", "))));
    return {};
}

void CliScripts::makeLoaders(const std::shared_ptr<DXScriptCatalogue> &catalogue,
                             const QStringList &names)
{
    DXDispatch::background([self = shared_from_this(), catalogue, names] {
        const Made made = self->made(*catalogue, names);
        DXDispatch::main([self, made] { self->loadersMade(made); });
    });
}

// A script about nothing looks like one about something that is empty: the object is looked up
// first.
CliScripts::Made CliScripts::made(const DXScriptCatalogue &catalogue,
                                  const QStringList &names) const
{
    Made made;
    if (!catalogue.objectExists(m_init.request, *m_init.details, &made.error))
        return made;
    for (const QString &name : names) {
        DXScriptCatalogue::Request request = m_init.request;
        request.script = name;
        made.loaders += catalogue.createLoader(request, *m_init.details, &made.error);
    }
    return made;
}

void CliScripts::loadersMade(const Made &made)
{
    if (made.error) {
        fail(CliExitUsage, made.error.description());
        return;
    }
    m_loaders = made.loaders;
    loadNext();
}

void CliScripts::loadNext()
{
    if (m_printed < m_loaders.size()) {
        m_loaders[m_printed]->setDelegate(weak_from_this());
        m_loaders[m_printed]->beginLoadingQuery(*m_init.details);
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (m_failure)
        m_init.console.error(m_failure.description().trimmed());
    m_init.done(m_failure ? CliExitStatementFailed : CliExitOk);
}

void CliScripts::queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query)
{
    Q_UNUSED(loader)
    DXDispatch::main([self = shared_from_this(), query] {
        self->print(query);
        ++self->m_printed;
        self->loadNext();
    });
}

void CliScripts::print(const QString &script)
{
    if (m_names.size() > 1)
        m_init.console.print(QLatin1String(m_printed == 0 ? "-- " : "\n-- ") + m_names[m_printed]);
    CliOutput &output = m_init.console.output();
    if (output.isTerminal())
        m_init.console.print(QString(script).remove(u'\r'));
    else
        output.write((script + u'\n').toUtf8());
}

void CliScripts::fail(int status, const QString &text)
{
    m_init.console.error(text);
    m_init.done(status);
}
