#pragma once

#include "settings/StoreResult.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace randblatt {

/// Runs jobs one after the other beside the thread that it lives on, on a thread that is there while there
/// are any. A job that hangs holds nobody up but those after it: the object does not wait for it when it
/// goes.
class StoreWorker
{
public:
    using Job = std::function<StoreResult()>;
    /// Called on the worker's own thread when the job has ended.
    using Answer = std::function<void(StoreResult)>;

    StoreWorker();
    /// Drops the jobs that have not begun, and all answers.
    ~StoreWorker();
    StoreWorker(const StoreWorker &) = delete;
    StoreWorker &operator=(const StoreWorker &) = delete;

    /// Appends a job. What it uses it must hold itself, as it may outlive its owner. Where no thread can be
    /// made it runs at once. One that throws is logged, and its result is StoreResult::unavailable.
    void run(Job job, Answer answer = {});
    [[nodiscard]] bool isIdle() const;
    /// Until all jobs have ended, or the time is over; whether they have. Their answers come with the events.
    bool wait(std::chrono::milliseconds longest);

private:
    struct State;

    QObject m_receiver;
    std::shared_ptr<State> m_state;
};

} // namespace randblatt
