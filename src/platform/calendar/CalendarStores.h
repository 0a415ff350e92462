#pragma once

#include "platform/CalendarStore.h"

#include <memory>

namespace randblatt {

/// The calendar store of the running desktop: the calendar server where it can be started on the session bus,
/// else the application's own file. Cheap: which one it is turns out with the first request for access.
[[nodiscard]] std::unique_ptr<CalendarStore> makeCalendarStore();

} // namespace randblatt
