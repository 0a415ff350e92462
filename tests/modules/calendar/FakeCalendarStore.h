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
    Events answer = QList<CalendarEvent>();
    int accessRequests = 0;
    std::vector<std::pair<QDateTime, QDateTime>> fetches;
    QList<NewCalendarEvent> saved;

    void requestAccess(QObject *context, std::function<void(bool)> completion) override
    {
        ++accessRequests;
        reply(context, [completion, granted = grants] { completion(granted); });
    }
    void fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                     std::function<void(const Events &)> completion) override
    {
        fetches.emplace_back(start, end);
        reply(context, [completion, events = answer] { completion(events); });
    }
    void saveEvent(const NewCalendarEvent &event, QObject *context,
                   std::function<void(bool)> completion) override
    {
        saved.append(event);
        if (saves && answer)
            answer->append(make(event.title, event.start, event.end));
        reply(context, [completion, succeeds = saves] { completion(succeeds); });
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
