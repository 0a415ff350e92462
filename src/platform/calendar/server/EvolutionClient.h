#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/server/Glib.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace randblatt {

/// What a calendar is called, and its colour; invalid if it has none.
[[nodiscard]] QString calendarName(ESource *source);
[[nodiscard]] QColor calendarColor(ESource *source);

/// One calendar of the server. Each operation waits for the server; to be used on the thread whose GLib main
/// context hears of changes.
class EvolutionClient
{
public:
    /// Connects to the calendar of `source`; null if that fails. `changed` is called for every change in the
    /// calendar and when it dies; it must outlive the client.
    [[nodiscard]] static std::unique_ptr<EvolutionClient>
    connect(ESource *source, std::function<void()> *changed, GCancellable *cancellable);
    ~EvolutionClient();
    EvolutionClient(const EvolutionClient &) = delete;
    EvolutionClient &operator=(const EvolutionClient &) = delete;

    /// The events that overlap the range; none if the server does not answer.
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(const QDateTime &start, const QDateTime &end,
                                                             GCancellable *cancellable);
    /// See CalendarStore::saveEvent().
    [[nodiscard]] CalendarStore::Saved save(const NewCalendarEvent &event, GCancellable *cancellable);
    /// See CalendarStore::removeEvent().
    [[nodiscard]] CalendarStore::Removed remove(const SavedEvent &event, GCancellable *cancellable);
    [[nodiscard]] bool isWritable() const;
    /// Whether the last operation failed; a new client may have more luck.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
    EvolutionClient(ESource *source, GlibPointer<ECalClient> client, std::function<void()> *changed);

    void watch(GCancellable *cancellable);
    /// Events, and the names of the zones that they need.
    struct Found
    {
        void add(ICalComponent *component);

        QByteArray text;
        QSet<QByteArray> tzids;
    };

    [[nodiscard]] std::optional<Found> components(const QDateTime &start, const QDateTime &end,
                                                  GCancellable *cancellable) const;
    [[nodiscard]] bool addSeries(const char *uid, Found &components, GCancellable *cancellable) const;
    [[nodiscard]] QByteArray zones(const QSet<QByteArray> &tzids, GCancellable *cancellable);

    /// The fingerprint of an event as the server has it; none without an answer, empty without an event.
    [[nodiscard]] std::optional<QByteArray> fingerprint(const QByteArray &uid, GCancellable *cancellable);

    GlibPointer<ESource> m_source;
    GlibPointer<ECalClient> m_client;
    GlibPointer<ECalClientView> m_view;
    std::function<void()> *m_changed;
    /// The calendar's own zones by name, as iCalendar texts.
    QHash<QByteArray, QByteArray> m_zones;
    bool m_hasFailed = false;
};

} // namespace randblatt
