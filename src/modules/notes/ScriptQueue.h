#pragma once

#include <QObject>
#include <QThread>

#include <functional>
#include <memory>

namespace randblatt {

/// A serial queue on a thread of its own: what it is given runs there one after another, and what each of
/// them gives back runs on the main thread, in the same order.
///
/// What was given is carried out also when the queue is destroyed meanwhile. Destruction waits for it a
/// little, so that a change given just before the end of the process is made.
class ScriptQueue
{
public:
    using Completion = std::function<void()>;
    /// Runs on the queue's thread and gives what is to be done on the main thread.
    using Job = std::function<Completion()>;

    explicit ScriptQueue(const QString &name);
    ~ScriptQueue();
    ScriptQueue(const ScriptQueue &) = delete;
    ScriptQueue &operator=(const ScriptQueue &) = delete;

    void enqueue(Job job);

private:
    /// Both end by themselves, after the last job.
    QThread *m_thread;
    QObject *m_worker;
};

} // namespace randblatt
