// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/qglobal.h>

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

/// Those who want to be told of something, in the order they came. Call-backs run on the thread
/// that notifies, without any lock held: they may notify, add and remove, themselves included.
/// [any]
template<typename... Arguments>
class DXObserverList final
{
public:
    using Callback = std::function<void(Arguments...)>;

    DXObserverList() = default;

    /// Calls callback at every notify() until the returned object is destroyed, which waits for
    /// call-backs under way on other threads. It may outlive the list.
    [[nodiscard]] std::shared_ptr<void> add(Callback callback)
    {
        const auto observer = std::make_shared<Observer>(std::move(callback));
        const std::lock_guard lock(m_state->mutex);
        m_state->observers.push_back(observer);
        return std::shared_ptr<void>(nullptr, [state = m_state, observer](void *) {
            {
                const std::lock_guard stateLock(state->mutex);
                std::erase(state->observers, observer);
            }
            observer->retire();
        });
    }

    /// Calls every observer that is there now and is not removed before its turn.
    void notify(Arguments... arguments) const
    {
        std::vector<std::shared_ptr<Observer>> observers;
        {
            const std::lock_guard lock(m_state->mutex);
            observers = m_state->observers;
        }
        for (const auto &observer : observers)
            observer->call(arguments...);
    }

private:
    Q_DISABLE_COPY_MOVE(DXObserverList)

    class Observer
    {
    public:
        explicit Observer(Callback callback)
            : m_callback(std::move(callback))
        { }

        void call(Arguments... arguments)
        {
            const auto self = std::this_thread::get_id();
            {
                const std::lock_guard lock(m_mutex);
                if (m_isRetired)
                    return;
                m_callers.push_back(self);
            }
            m_callback(arguments...);
            const std::lock_guard lock(m_mutex);
            m_callers.erase(std::find(m_callers.begin(), m_callers.end(), self));
            m_left.notify_all();
        }

        void retire()
        {
            const auto isSelf = [self = std::this_thread::get_id()](std::thread::id caller) {
                return caller == self;
            };
            std::unique_lock lock(m_mutex);
            m_isRetired = true;
            m_left.wait(lock,
                        [&] { return std::all_of(m_callers.begin(), m_callers.end(), isSelf); });
        }

    private:
        const Callback m_callback;
        std::mutex m_mutex;
        std::condition_variable m_left;
        // The threads inside the call-back, one entry a call: whoever removes an observer must not
        // wait for its own.
        std::vector<std::thread::id> m_callers;
        bool m_isRetired = false;
    };

    struct State
    {
        std::mutex mutex;
        std::vector<std::shared_ptr<Observer>> observers;
    };

    const std::shared_ptr<State> m_state = std::make_shared<State>();
};
