#pragma once

#include <libecal/libecal.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace randblatt {

struct GlibDeleter
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(char *text) const { g_free(text); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(GMainLoop *loop) const { g_main_loop_unref(loop); }
};

/// A reference to an object of GLib's type system, or a value that GLib frees.
template <typename T>
using GlibPointer = std::unique_ptr<T, GlibDeleter>;

/// Takes a further reference.
template <typename T>
[[nodiscard]] GlibPointer<T> glibReference(T *object)
{
    return GlibPointer<T>(static_cast<T *>(g_object_ref(object)));
}

/// Where a call of GLib puts its error.
class GlibError
{
public:
    GlibError() = default;
    ~GlibError() { g_clear_error(&m_error); }
    GlibError(const GlibError &) = delete;
    GlibError &operator=(const GlibError &) = delete;

    /// To be passed to one call.
    [[nodiscard]] GError **out()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    [[nodiscard]] bool is(GQuark domain, int code) const { return g_error_matches(m_error, domain, code); }
    [[nodiscard]] const char *message() const { return m_error != nullptr ? m_error->message : ""; }

private:
    GError *m_error = nullptr;
};

/// Calls `action` for every `signal` of a GLib object, until disconnectSignals(). It must live until then.
void connectSignal(gpointer object, const char *signal, std::function<void()> *action);
void disconnectSignals(gpointer object, std::function<void()> *action);

/// Cancels the calls that it is given to when their time is up, or the application ends.
class Deadline
{
public:
    /// `shutdown` is borrowed; cancelling it cancels the deadline.
    Deadline(GCancellable *shutdown, std::chrono::milliseconds time);
    ~Deadline();
    Deadline(const Deadline &) = delete;
    Deadline &operator=(const Deadline &) = delete;

    [[nodiscard]] GCancellable *cancellable() const { return m_cancellable.get(); }

private:
    GCancellable *m_shutdown;
    GlibPointer<GCancellable> m_cancellable;
    gulong m_connection = 0;
    std::mutex m_mutex;
    std::condition_variable m_done;
    bool m_isDone = false;
    std::thread m_watch;
};

} // namespace randblatt
