#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/CalendarZone.h"
#include "platform/calendar/EventTime.h"

#include <QByteArray>

#include <libical/ical.h>

#include <map>
#include <memory>
#include <optional>

namespace randblatt {

struct IcalDeleter
{
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
};

using IcalComponent = std::unique_ptr<icalcomponent, IcalDeleter>;

/// A time on the wall clock of the zone that it is written in; null for a date, and for a time of unknown or
/// no zone.
struct ZonedTime
{
    /// Seconds since 1970, as if the clock showed UTC; those of a date's first moment.
    qint64 wall = 0;
    bool isDate = false;
    const CalendarZone *zone = nullptr;

    [[nodiscard]] EventTime eventTime() const;
    /// The same zone's time `seconds` later on the wall clock.
    [[nodiscard]] ZonedTime shifted(qint64 seconds) const { return {wall + seconds, isDate, zone}; }
    /// The day on the wall clock.
    [[nodiscard]] ZonedTime day() const;
};

/// The time zones that a calendar's times may be written in: its own, and those of the system.
class IcalZones
{
public:
    /// Makes a zone of the calendar known; the first of a name counts.
    void add(icalcomponent *zone);
    /// The zone of that name; null if nobody knows it. It lives as long as the zones do.
    [[nodiscard]] const CalendarZone *zone(const QByteArray &tzid);

private:
    std::map<QByteArray, std::optional<CalendarZone>> m_known;
};

/// A property's text in UTF-8, or else in Latin-1, as old programs write it. Empty where there is none.
[[nodiscard]] QString textOf(icalcomponent *component, icalproperty_kind kind);
[[nodiscard]] QString decodedText(const char *text);

/// Reads a property's time; none where there is none, or none that makes sense. A time in an unknown zone
/// floats.
[[nodiscard]] std::optional<ZonedTime> zonedTime(icalproperty *property, IcalZones &zones);
/// The same for a value of a property that has several.
[[nodiscard]] std::optional<ZonedTime> zonedTime(const icaltimetype &value, icalproperty *property,
                                                 IcalZones &zones);

/// A VEVENT for an event, its times in UTC; an all-day event's are dates.
[[nodiscard]] QByteArray newEventText(const NewCalendarEvent &event);
/// What people put into a VEVENT, but not what programs and servers note there on their way. Empty for a text
/// that is no VEVENT.
[[nodiscard]] QByteArray eventFingerprint(const QByteArray &event);

} // namespace randblatt
