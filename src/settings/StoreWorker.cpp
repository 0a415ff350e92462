#include "settings/StoreWorker.h"

#include "platform/ExceptionText.h"

#include <QLoggingCategory>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace randblatt {

namespace {

Q_LOGGING_CATEGORY(lcWorker, "quillbar.preferences")

/// The thread's edge: no exception goes further.
StoreResult resultOf(const StoreWorker::Job &job)
{
    try {
        return job();
    } catch (...) {
        qCCritical(lcWorker, "Auftrag abgebrochen: %ls", qUtf16Printable(currentExceptionText()));
        return StoreResult::unavailable;
    }
}

} // namespace

struct StoreWorker::State
{
    std::mutex mutex;
    std::condition_variable ended;
    std::deque<std::pair<Job, Answer>> jobs;
    bool isRunning = false;
    // Null once nobody waits for answers any more.
    QObject *receiver = nullptr;

    void work()
    {
        std::unique_lock lock(mutex);
        while (!jobs.empty()) {
            const auto [job, answer] = std::exchange(jobs.front(), {});
            jobs.pop_front();
            lock.unlock();
            const StoreResult result = resultOf(job);
            lock.lock();
            if (receiver != nullptr && answer)
                QMetaObject::invokeMethod(
                    receiver, [answer = answer, result] { answer(result); }, Qt::QueuedConnection);
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

void StoreWorker::run(Job job, Answer answer)
{
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->jobs.emplace_back(std::move(job), std::move(answer));
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
