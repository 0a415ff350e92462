#include "modules/notes/ScriptQueue.h"

#include "platform/ExceptionText.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLoggingCategory>
#include <QMutex>

#include <chrono>
#include <utility>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcNotes, "quillbar.notes")

constexpr auto longestWaitAtEnd = 1s;
constexpr uint stackSize = 8 * 1024 * 1024;

/// Guards the application object against being destroyed while a queue that outlives it posts to it.
struct Delivery
{
    QMutex mutex;
    bool isOpen = false;
};

Delivery &delivery()
{
    static Delivery instance;
    return instance;
}

void openDelivery()
{
    const QMutexLocker locker(&delivery().mutex);
    if (delivery().isOpen)
        return;
    delivery().isOpen = true;
    qAddPostRoutine([] {
        const QMutexLocker closing(&delivery().mutex);
        delivery().isOpen = false;
    });
}

void deliver(const ScriptQueue::Completion &completion, const ASResult &result)
{
    const QMutexLocker locker(&delivery().mutex);
    if (!delivery().isOpen || !completion)
        return;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [completion, result] { completion(result); }, Qt::QueuedConnection);
}

/// The thread's edge: no exception goes further.
ASResult resultOf(const ScriptQueue::Job &job)
{
    try {
        return job();
    } catch (...) {
        const QString text = currentExceptionText();
        qCCritical(lcNotes, "Auftrag abgebrochen: %ls", qUtf16Printable(text));
        return {ASResult::Kind::failure, text};
    }
}

} // namespace

ScriptQueue::ScriptQueue(const QString &name)
    : m_thread(new QThread)
    , m_worker(new QObject)
{
    openDelivery();
    m_thread->setObjectName(name);
    // Where the system gives threads little, a nested script would not fit.
    m_thread->setStackSize(stackSize);
    m_worker->moveToThread(m_thread);
    QObject::connect(m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    QObject::connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_thread->start();
}

ScriptQueue::~ScriptQueue()
{
    QThread *thread = m_thread;
    QMetaObject::invokeMethod(
        m_worker, [thread] { thread->quit(); }, Qt::QueuedConnection);
    thread->wait(QDeadlineTimer(longestWaitAtEnd));
}

void ScriptQueue::enqueue(Job job, Completion completion)
{
    QMetaObject::invokeMethod(
        m_worker,
        [job = std::move(job), completion = std::move(completion)] { deliver(completion, resultOf(job)); },
        Qt::QueuedConnection);
}

} // namespace randblatt
