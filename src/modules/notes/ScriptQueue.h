#pragma once

#include "modules/notes/ASResult.h"

#include <QObject>
#include <QThread>

#include <functional>

namespace randblatt {

/// A serial queue on a thread of its own: what it is given runs there one after another, and its results are
/// handed over on the main thread, in the same order. A job that throws has failed; its result says why.
///
/// What was given is carried out also when the queue is destroyed meanwhile. Destruction waits for it a
/// little, so that a change given just before the end of the process is made.
class ScriptQueue
{
public:
    /// Runs on the queue's thread.
    using Job = std::function<ASResult()>;
    /// Takes the result on the main thread, but may be destroyed on the queue's.
    using Completion = std::function<void(const ASResult &)>;

    explicit ScriptQueue(const QString &name);
    ~ScriptQueue();
    ScriptQueue(const ScriptQueue &) = delete;
    ScriptQueue &operator=(const ScriptQueue &) = delete;

    void enqueue(Job job, Completion completion);

private:
    /// Both end by themselves, after the last job.
    QThread *m_thread;
    QObject *m_worker;
};

} // namespace randblatt
