#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/EventTime.h"

#include <QByteArray>
#include <QHash>

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

/// The time zones that a calendar's times may be written in: its own, and those of the library's database.
class IcalZones
{
public:
    /// `calendar` is borrowed and must outlive the zones.
    explicit IcalZones(icalcomponent *calendar);

    /// The zone of that name; null if nobody knows it.
    [[nodiscard]] icaltimezone *zone(const char *tzid);

private:
    icalcomponent *m_calendar;
    /// The library searches its database from one end to the other.
    QHash<QByteArray, icaltimezone *> m_known;
};

/// Reads a property's time; none where there is none, or none that makes sense. A time in an unknown zone
/// floats.
[[nodiscard]] std::optional<ZonedTime> zonedTime(icalproperty *property, IcalZones &zones);
/// The same for a value of a property that has several.
[[nodiscard]] std::optional<ZonedTime> zonedTime(const icaltimetype &value, icalproperty *property,
                                                 IcalZones &zones);

/// A VEVENT for an event, its times in UTC.
[[nodiscard]] QByteArray newEventText(const NewCalendarEvent &event);
/// What people put into a VEVENT, but not what programs and servers note there on their way. Empty for a text
/// that is no VEVENT.
[[nodiscard]] QByteArray eventFingerprint(const QByteArray &event);

} // namespace randblatt
