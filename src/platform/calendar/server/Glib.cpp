#include "platform/calendar/server/Glib.h"

namespace randblatt {

void connectSignal(gpointer object, const char *signal, std::function<void()> *action)
{
    // Swapped, the action comes first; what else the signal brings is of no interest.
    g_signal_connect_swapped(
        object, signal, G_CALLBACK(+[](gpointer data) { (*static_cast<std::function<void()> *>(data))(); }),
        action);
}

void disconnectSignals(gpointer object, std::function<void()> *action)
{
    g_signal_handlers_disconnect_matched(object, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr, action);
}

Deadline::Deadline(GCancellable *shutdown, std::chrono::milliseconds time)
    : m_shutdown(shutdown)
    , m_cancellable(g_cancellable_new())
{
    // Before the connection: without a thread there is no deadline that could take that away again.
    m_watch = std::thread([this, time] {
        std::unique_lock lock(m_mutex);
        if (!m_done.wait_for(lock, time, [this] { return m_isDone; }))
            g_cancellable_cancel(m_cancellable.get());
    });
    m_connection = g_cancellable_connect(shutdown, G_CALLBACK(+[](GCancellable *, gpointer data) {
                                             g_cancellable_cancel(static_cast<GCancellable *>(data));
                                         }),
                                         m_cancellable.get(), nullptr);
}

Deadline::~Deadline()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isDone = true;
    }
    m_done.notify_one();
    m_watch.join();
    g_cancellable_disconnect(m_shutdown, m_connection);
}

} // namespace randblatt
