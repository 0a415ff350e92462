#include "platform/calendar/server/EvolutionCalendar.h"

#include "platform/calendar/CalendarWorker.h"
#include "platform/calendar/server/EvolutionServer.h"

#include <QLoggingCategory>

#include <chrono>
#include <utility>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

// Leaving the program takes a second at most, with all that is left to do.
constexpr auto patience = 400ms;

} // namespace

/// What the thread works with.
struct EvolutionCalendar::Worker
{
    explicit Worker(const QString &serverName)
        : server(serverName.toUtf8(), glibReference(shutdown.get()))
    {
    }

    void run()
    {
        g_main_context_push_thread_default(context.get());
        g_main_loop_run(loop.get());
        server.close();
        // What has been told off still wants to be heard of before its objects can go.
        while (g_main_context_iteration(context.get(), FALSE)) {
        }
        g_main_context_pop_thread_default(context.get());
    }

    void post(std::function<void()> task)
    {
        // Not g_main_context_invoke(): before the thread runs its loop that would run the task right here.
        GSource *source = g_idle_source_new();
        g_source_set_priority(source, G_PRIORITY_DEFAULT);
        g_source_set_callback(
            source,
            [](gpointer data) -> gboolean {
                (*static_cast<std::function<void()> *>(data))();
                return G_SOURCE_REMOVE;
            },
            new std::function<void()>(std::move(task)),
            [](gpointer data) { delete static_cast<std::function<void()> *>(data); });
        g_source_attach(source, context.get());
        g_source_unref(source);
    }

    void answer(const std::function<void()> &give)
    {
        (void)guarded(
            [&] {
                gate.pass(give);
                return true;
            },
            [](const QString &) { return false; });
    }

    GlibPointer<GMainContext> context{g_main_context_new()};
    GlibPointer<GMainLoop> loop{g_main_loop_new(context.get(), FALSE)};
    GlibPointer<GCancellable> shutdown{g_cancellable_new()};
    AnswerGate gate;
    /// Used on the thread alone, once the change handler is set.
    EvolutionServer server;
};

EvolutionCalendar::EvolutionCalendar(const QString &serverName)
    : m_serverName(serverName)
    , m_worker(std::make_shared<Worker>(serverName))
{
    std::promise<void> end;
    m_end = end.get_future();
    m_thread = std::thread([worker = m_worker, end = std::move(end)]() mutable {
        (void)guarded(
            [&worker] {
                worker->run();
                return true;
            },
            [](const QString &) { return false; });
        end.set_value();
    });
}

EvolutionCalendar::~EvolutionCalendar()
{
    g_cancellable_cancel(m_worker->shutdown.get());
    m_worker->post([loop = m_worker->loop.get()] { g_main_loop_quit(loop); });
    const bool hasEnded = m_end.wait_for(patience) == std::future_status::ready;
    m_worker->gate.close();
    if (hasEnded) {
        m_thread.join();
        return;
    }
    qCWarning(lcCalendar, "Der Kalenderdienst antwortet nicht; das Programm wartet nicht auf ihn.");
    m_thread.detach();
}

QString EvolutionCalendar::name() const
{
    return m_serverName;
}

void EvolutionCalendar::setChangeHandler(std::function<void()> handler)
{
    m_worker->server.setChangeHandler(
        [worker = m_worker.get(), handler = std::move(handler)] { worker->answer(handler); });
}

template <typename Answer, typename Task>
void EvolutionCalendar::post(const Task &task, std::function<void(const Answer &)> completion)
{
    // The task is the worker's own, which lives as long as its tasks.
    m_worker->post([worker = m_worker.get(), task, completion = std::move(completion)] {
        const Answer answer = guarded([&] { return task(worker->server); }, &Answer::failure);
        worker->answer([&] { completion(answer); });
    });
}

void EvolutionCalendar::open(std::function<void(const CalendarOpening &)> completion)
{
    using Opened = CalendarAnswer<CalendarOpening>;
    post<Opened>(
        [](EvolutionServer &server) { return Opened(server.open()); },
        [completion = std::move(completion)](const Opened &opened) {
            completion(opened ? *opened : CalendarOpening{CalendarOpening::Outcome::failed, opened.reason()});
        });
}

void EvolutionCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                    std::function<void(const CalendarStore::Events &)> completion)
{
    post<CalendarStore::Events>([start, end](EvolutionServer &server) { return server.events(start, end); },
                                std::move(completion));
}

void EvolutionCalendar::fetchCalendars(std::function<void(const CalendarStore::Calendars &)> completion)
{
    post<CalendarStore::Calendars>([](EvolutionServer &server) { return server.calendars(); },
                                   std::move(completion));
}

void EvolutionCalendar::saveEvent(const NewCalendarEvent &event,
                                  std::function<void(const CalendarStore::Saved &)> completion)
{
    post<CalendarStore::Saved>([event](EvolutionServer &server) { return server.save(event); },
                               std::move(completion));
}

void EvolutionCalendar::removeEvent(const SavedEvent &event,
                                    std::function<void(const CalendarStore::Removed &)> completion)
{
    post<CalendarStore::Removed>([event](EvolutionServer &server) { return server.remove(event); },
                                 std::move(completion));
}

} // namespace randblatt
