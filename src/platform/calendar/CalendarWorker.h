#pragma once

#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace randblatt {

/// Ends the answers of a worker whose owner is gone.
class AnswerGate
{
public:
    /// Calls `answer`, which must be quick, unless the gate is closed. Nobody can close it meanwhile.
    void pass(const std::function<void()> &answer)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isClosed)
            answer();
    }
    void close()
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    }

private:
    std::mutex m_mutex;
    bool m_isClosed = false;
};

/// Says in the log which exception has ended a piece of work, and gives a German reason for people. To be
/// called in a `catch` block.
[[nodiscard]] QString reportedException();

/// What `task` gives, or, if it throws, what `failure` makes of a German reason: no exception may leave a
/// thread.
template <typename Task, typename Failure>
auto guarded(const Task &task, const Failure &failure) -> decltype(task())
{
    try {
        return task();
    } catch (...) {
        return failure(reportedException());
    }
}

/// Runs tasks one after another on a thread that ends when there is nothing to do. Destroying it waits for
/// the tasks, but not for ever: one that hangs goes on by itself, its answer unheard. So a task must own what
/// it uses, and answer through the gate.
class CalendarWorker
{
public:
    CalendarWorker();
    ~CalendarWorker();
    CalendarWorker(const CalendarWorker &) = delete;
    CalendarWorker &operator=(const CalendarWorker &) = delete;

    void start(std::function<void()> task);
    /// Runs a task that gives an answer, a CalendarAnswer, which `completion` gets there.
    template <typename Answer>
    void start(std::function<Answer()> task, std::function<void(const Answer &)> completion)
    {
        start([gate = m_gate, task = std::move(task), completion = std::move(completion)] {
            const Answer answer = guarded(task, &Answer::failure);
            gate->pass([&] { completion(answer); });
        });
    }
    /// To be given to tasks that answer in another way.
    [[nodiscard]] std::shared_ptr<AnswerGate> gate() const { return m_gate; }

private:
    std::unique_ptr<QThreadPool> m_queue;
    std::shared_ptr<AnswerGate> m_gate;
};

} // namespace randblatt
