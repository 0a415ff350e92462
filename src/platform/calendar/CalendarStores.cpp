#include "platform/calendar/CalendarStores.h"

#include "platform/calendar/DesktopCalendarStore.h"
#include "platform/calendar/EmbeddedCalendar.h"
#include "platform/calendar/ServerCalendar.h"

namespace randblatt {

std::unique_ptr<CalendarStore> makeCalendarStore()
{
    std::vector<std::unique_ptr<CalendarBackend>> candidates;
    candidates.push_back(
        std::make_unique<ServerCalendar>(ServerCalendar::defaultPluginPath(), QDBusConnection::sessionBus()));
    candidates.push_back(std::make_unique<EmbeddedCalendar>(EmbeddedCalendar::defaultPath()));
    return std::make_unique<DesktopCalendarStore>(std::move(candidates));
}

} // namespace randblatt
