#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/server/Glib.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace randblatt {

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
    /// Whether the last operation failed; a new client may have more luck.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
    EvolutionClient(ESource *source, GlibPointer<ECalClient> client, std::function<void()> *changed);

    void watch(GCancellable *cancellable);
    [[nodiscard]] std::optional<QByteArray> components(const QDateTime &start, const QDateTime &end,
                                                       GCancellable *cancellable) const;
    [[nodiscard]] std::optional<QByteArray> series(const char *uid, GCancellable *cancellable) const;
    [[nodiscard]] QByteArray zones(const QByteArray &components, GCancellable *cancellable) const;

    /// The fingerprint of an event as the server has it; none without an answer, empty without an event.
    [[nodiscard]] std::optional<QByteArray> fingerprint(const QByteArray &uid, GCancellable *cancellable);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QColor color() const;

    GlibPointer<ESource> m_source;
    GlibPointer<ECalClient> m_client;
    GlibPointer<ECalClientView> m_view;
    std::function<void()> *m_changed;
    bool m_hasFailed = false;
};

} // namespace randblatt
