// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXCompletionCache.h"

#include "client/DabroDBC.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"
#include "editing/DXAutocompleteHelper.h"
#include "editing/DXCompletionNames.h"

#include <QHash>

namespace
{

using Caches = QHash<QString, std::weak_ptr<DXCompletionCache>>;

Caches &caches()
{
    static Caches all;
    return all;
}

} // namespace

struct DXCompletionCache::State
{
    std::shared_ptr<const DabroDBC> details;
    std::shared_ptr<DXAutocompleteHelper> helper;
    std::shared_ptr<const DXCompletionNames> names;
    quint64 lastRead = 0;

    /// Of two readings the one that began later stays.
    static void read(const std::shared_ptr<State> &state)
    {
        const auto details = state->details;
        const auto helper = state->helper;
        const quint64 number = ++state->lastRead;
        DXDispatch::background([weak = std::weak_ptr(state), details, helper, number] {
            const auto names = DXCompletionNames::read(*helper, *details);
            DXDispatch::main([weak, names, number] {
                const auto self = weak.lock();
                if (self && names && number == self->lastRead)
                    self->names = names;
            });
        });
    }
};

std::shared_ptr<DXCompletionCache>
DXCompletionCache::of(const std::shared_ptr<const DabroDBC> &details)
{
    DX_ASSERT_MAIN();
    const auto helper = details->sharedAutocompleteHelper();
    const QString key =
        QString::number(reinterpret_cast<quintptr>(helper.get())) + u' ' + details->description();
    std::weak_ptr<DXCompletionCache> &known = caches()[key];
    if (auto cache = known.lock())
        return cache;
    std::shared_ptr<DXCompletionCache> cache(new DXCompletionCache(details));
    known = cache;
    return cache;
}

DXCompletionCache::DXCompletionCache(const std::shared_ptr<const DabroDBC> &details)
    : d(std::make_shared<State>(State{.details = details->copy(),
                                      .helper = details->sharedAutocompleteHelper(),
                                      .names = {},
                                      .lastRead = 0}))
{
    if (!d->helper)
        return;
    const QString key = details->description();
    m_updates = DXNotificationCenter::sharedInstance().observe(
        DXAutocompleteHelper::AutoCompleteUpdatedNotificationName(),
        [state = d, key](const DXNotificationCenter::Notification &notification) {
            if (notification.userInfo.value(DXAutocompleteHelper::connectionKey()) == key)
                State::read(state);
        });
    State::read(d);
}

DXCompletionCache::~DXCompletionCache() = default;

void DXCompletionCache::load(bool isForced)
{
    if (d->helper)
        d->helper->requestEntriesForDatabaseConnectionDetails(
            *d->details, isForced ? DXAutocompleteHelper::Update::Force
                                  : DXAutocompleteHelper::Update::IfNeeded);
}

std::shared_ptr<const DXCompletionNames> DXCompletionCache::names() const
{
    return d->names;
}
