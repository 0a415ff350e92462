#pragma once

#include "platform/CalendarStore.h"

#include <QPointer>

#include <utility>
#include <vector>

namespace randblatt {

/// A store whose answers the test sets. It answers as soon as the event loop runs, or, while `holds` is set,
/// when it is told to.
class FakeCalendarStore : public CalendarStore
{
    Q_OBJECT

public:
    bool grants = true;
    bool saves = true;
    bool holds = false;
    QList<WritableCalendar> calendars = {{}};
    /// None is a failure, for `reason`.
    std::optional<QList<CalendarEvent>> answer = QList<CalendarEvent>();
    QString reason;
    /// What becomes of an event that is to be removed; none is a failure.
    std::optional<Removal> removal = Removal::removed;
    int accessRequests = 0;
    std::vector<std::pair<QDateTime, QDateTime>> fetches;
    QList<NewCalendarEvent> saved;
    QStringList removed;

    void requestAccess(QObject *context, std::function<void(const Access &)> completion) override
    {
        ++accessRequests;
        reply(context, [completion, access = grants ? Access(CalendarAccess()) : Access::failure(reason)] {
            completion(access);
        });
    }
    void fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                     std::function<void(const Events &)> completion) override
    {
        fetches.emplace_back(start, end);
        reply(context, [completion, events = answer ? Events(*answer) : Events::failure(reason)] {
            completion(events);
        });
    }
    void fetchCalendars(QObject *context, std::function<void(const Calendars &)> completion) override
    {
        reply(context, [completion, given = calendars] { completion(given); });
    }
    void saveEvent(const NewCalendarEvent &event, QObject *context,
                   std::function<void(const Saved &)> completion) override
    {
        saved.append(event);
        if (saves && answer)
            answer->append(make(event.title, event.start, event.end));
        const SavedEvent done{QStringLiteral("Privat"), event.uid, event.title.toUtf8()};
        reply(context,
              [completion, given = saves ? Saved(done) : Saved::failure(reason)] { completion(given); });
    }
    void removeEvent(const SavedEvent &event, QObject *context,
                     std::function<void(const Removed &)> completion) override
    {
        removed.append(event.uid);
        const QString title = QString::fromUtf8(event.fingerprint);
        if (removal == Removal::removed && answer)
            answer->removeIf([&title](const CalendarEvent &other) { return other.title == title; });
        reply(context, [completion, given = removal ? Removed(*removal) : Removed::failure(reason)] {
            completion(given);
        });
    }

    /// Gives the held answer at `index`, and forgets it.
    void release(size_t index)
    {
        const auto answered = m_held.at(index);
        m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(index));
        answered();
    }

    [[nodiscard]] static CalendarEvent make(const QString &title, const QDateTime &start,
                                            const QDateTime &end, const QColor &color = {})
    {
        return {title, title, start, end, false, color, QStringLiteral("Privat")};
    }
    [[nodiscard]] static CalendarEvent allDay(const QString &title, const QDate &day,
                                              const QColor &color = {})
    {
        return {title, title, day.startOfDay(),        day.addDays(1).startOfDay(),
                true,  color, QStringLiteral("Privat")};
    }

private:
    void reply(QObject *context, const std::function<void()> &given)
    {
        const auto guarded = [context = QPointer(context), given] {
            if (context)
                given();
        };
        if (holds)
            m_held.emplace_back(guarded);
        else
            QMetaObject::invokeMethod(this, guarded, Qt::QueuedConnection);
    }

    std::vector<std::function<void()>> m_held;
};

} // namespace randblatt
