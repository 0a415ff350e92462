#include "settings/StoreWorker.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace randblatt {

struct StoreWorker::State
{
    std::mutex mutex;
    std::condition_variable ended;
    std::deque<Job> jobs;
    bool isRunning = false;
    // Null once nobody waits for answers any more.
    QObject *receiver = nullptr;

    void work()
    {
        std::unique_lock lock(mutex);
        while (!jobs.empty()) {
            const Job job = std::exchange(jobs.front(), {});
            jobs.pop_front();
            lock.unlock();
            Answer answer = job();
            lock.lock();
            if (receiver != nullptr && answer)
                QMetaObject::invokeMethod(receiver, std::move(answer), Qt::QueuedConnection);
        }
        isRunning = false;
        ended.notify_all();
    }
};

StoreWorker::StoreWorker()
    : m_state(std::make_shared<State>())
{
    m_state->receiver = &m_receiver;
}

StoreWorker::~StoreWorker()
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->receiver = nullptr;
    m_state->jobs.clear();
}

void StoreWorker::run(Job job)
{
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->jobs.push_back(std::move(job));
        if (std::exchange(m_state->isRunning, true))
            return;
    }
    try {
        std::thread([state = m_state] { state->work(); }).detach();
    } catch (const std::system_error &) {
        m_state->work();
    }
}

bool StoreWorker::isIdle() const
{
    const std::scoped_lock lock(m_state->mutex);
    return !m_state->isRunning;
}

bool StoreWorker::wait(std::chrono::milliseconds longest)
{
    std::unique_lock lock(m_state->mutex);
    return m_state->ended.wait_for(lock, longest, [this] { return !m_state->isRunning; });
}

} // namespace randblatt
