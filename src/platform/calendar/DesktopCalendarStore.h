#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/CalendarBackend.h"

#include <memory>
#include <vector>

namespace randblatt {

/// The store over the first of several back ends that this machine has. It is chosen with the first request
/// for access and then kept; access is refused while it does not open. So nothing is ever written to another
/// calendar because the right one was late.
class DesktopCalendarStore : public CalendarStore
{
    Q_OBJECT

public:
    /// Takes the back ends, the preferred one first.
    explicit DesktopCalendarStore(std::vector<std::unique_ptr<CalendarBackend>> candidates,
                                  QObject *parent = nullptr);
    ~DesktopCalendarStore() override;

    void requestAccess(QObject *context, std::function<void(const Access &access)> completion) override;
    void fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                     std::function<void(const Events &events)> completion) override;
    void fetchCalendars(QObject *context,
                        std::function<void(const Calendars &calendars)> completion) override;
    void saveEvent(const NewCalendarEvent &event, QObject *context,
                   std::function<void(const Saved &saved)> completion) override;
    void removeEvent(const SavedEvent &event, QObject *context,
                     std::function<void(const Removed &removed)> completion) override;

private:
    template <typename Answer>
    auto onMainThread(QObject *context, std::function<void(Answer)> completion);
    void tryCandidate(size_t index, const std::function<void(const Access &)> &completion);
    void choose(size_t index);

    std::vector<std::unique_ptr<CalendarBackend>> m_candidates;
    CalendarBackend *m_chosen = nullptr;
};

} // namespace randblatt
