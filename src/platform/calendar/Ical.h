#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/EventTime.h"

#include <QByteArray>

#include <libical/ical.h>

#include <memory>
#include <optional>

namespace randblatt {

struct IcalDeleter
{
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
    void operator()(icalrecur_iterator *iterator) const { icalrecur_iterator_free(iterator); }
};

using IcalComponent = std::unique_ptr<icalcomponent, IcalDeleter>;
using IcalIterator = std::unique_ptr<icalrecur_iterator, IcalDeleter>;

/// A time of the iCalendar library with the zone that it is written in; null for a date, and for a time of
/// unknown or no zone. The zone belongs to the calendar that the time was read from, or to the library.
struct ZonedTime
{
    icaltimetype wall = {};
    icaltimezone *zone = nullptr;

    [[nodiscard]] EventTime eventTime() const;
    /// The same zone's time `days` days later on the wall clock.
    [[nodiscard]] ZonedTime addDays(int days) const;
};

/// Reads a property's time; none where there is none. Zones are looked up in `calendar`, then in the
/// library's database. A time in a zone that neither knows floats.
[[nodiscard]] std::optional<ZonedTime> zonedTime(icalproperty *property, icalcomponent *calendar);
/// The same for a value of a property that has several.
[[nodiscard]] ZonedTime zonedTime(const icaltimetype &value, icalproperty *property, icalcomponent *calendar);

/// A VEVENT of its own uid for an event, its times in UTC.
[[nodiscard]] QByteArray newEventText(const NewCalendarEvent &event);

} // namespace randblatt
