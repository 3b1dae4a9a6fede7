// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXDispatch.h"

#include "dispatch/DXBackgroundQueue.h"
#include "dispatch/DXGuardedRun.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace
{

DXBackgroundQueue &backgroundQueue()
{
    static DXBackgroundQueue queue;
    return queue;
}

struct MainDoor
{
    std::mutex mutex;
    bool refuses = false;
};

MainDoor &mainDoor()
{
    static MainDoor door;
    return door;
}

// Work on its way through Qt's event queue, whose locks ThreadSanitizer does not see: the posting
// thread's last touch and the main thread's first are declared to it instead.
class Posted final
{
public:
    explicit Posted(DXDispatch::Work work)
        : m_work(std::move(work))
    { }
    Posted(Posted &&other) noexcept
        : m_work(std::move(other.m_work))
    {
        release();
    }
    Posted(const Posted &other)
        : m_work(other.m_work)
    {
        release();
    }
    Posted &operator=(const Posted &) = delete;
    Posted &operator=(Posted &&) = delete;
    ~Posted() { acquire(); }

    void operator()()
    {
        acquire();
        DXDispatch::Work work = std::move(m_work);
        // Qt may let go of this on the posting thread, after it was run here.
        release();
        DXGuardedRun(std::move(work));
    }

private:
    void release()
    {
#ifdef __SANITIZE_THREAD__
        __tsan_release(this);
#endif
    }
    void acquire()
    {
#ifdef __SANITIZE_THREAD__
        __tsan_acquire(this);
#endif
    }

    DXDispatch::Work m_work;
};

// The indexes of one apply(): whoever is free takes the next. Threads that come too late find none,
// so this outlives the call.
class SharedIndexes final
{
public:
    SharedIndexes(qsizetype count, const std::function<void(qsizetype)> &work)
        : m_count(count)
        , m_work(work)
    { }

    void take()
    {
        for (qsizetype index = m_next++; index < m_count; index = m_next++) {
            m_work(index);
            const std::lock_guard lock(m_mutex);
            if (++m_ended == m_count)
                m_allEnded.notify_all();
        }
    }
    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_allEnded.wait(lock, [this] { return m_ended == m_count; });
    }

private:
    const qsizetype m_count;
    const std::function<void(qsizetype)> m_work;
    std::atomic<qsizetype> m_next = 0;
    std::mutex m_mutex;
    std::condition_variable m_allEnded;
    qsizetype m_ended = 0;
};

} // namespace

bool DXDispatch::background(Work work)
{
    return backgroundQueue().add(std::move(work));
}

bool DXDispatch::backgroundAfter(std::chrono::milliseconds delay, Work work)
{
    return main([delay, work = std::move(work)]() mutable {
        QTimer::singleShot(delay, QCoreApplication::instance(),
                           [work = std::move(work)]() mutable { background(std::move(work)); });
    });
}

void DXDispatch::apply(qsizetype count, const std::function<void(qsizetype index)> &work)
{
    const auto indexes = std::make_shared<SharedIndexes>(count, work);
    const qsizetype others = std::min<qsizetype>(count, std::thread::hardware_concurrency()) - 1;
    for (qsizetype other = 0; other < others; ++other)
        background([indexes] { indexes->take(); });
    indexes->take();
    indexes->wait();
}

bool DXDispatch::main(Work work)
{
    MainDoor &door = mainDoor();
    const std::lock_guard lock(door.mutex);
    QCoreApplication *const application = QCoreApplication::instance();
    if (door.refuses || !application)
        return false;
    return QMetaObject::invokeMethod(application, Posted(std::move(work)), Qt::QueuedConnection);
}

bool DXDispatch::isMainThread()
{
    if (const QCoreApplication *const application = QCoreApplication::instance())
        return application->thread() == QThread::currentThread();
    static const std::thread::id first = std::this_thread::get_id();
    return first == std::this_thread::get_id();
}

void DXDispatch::shutdown()
{
    DX_ASSERT_MAIN();
    {
        MainDoor &door = mainDoor();
        const std::lock_guard lock(door.mutex);
        door.refuses = true;
    }
    backgroundQueue().shutdown();
}
