#include "platform/calendar/Ical.h"

#include <QTimeZone>

#include <array>

namespace randblatt {

namespace {

icaltimezone *zoneNamed(const char *tzid, icalcomponent *calendar)
{
    if (icaltimezone *zone = icalcomponent_get_timezone(calendar, tzid))
        return zone;
    if (icaltimezone *zone = icaltimezone_get_builtin_timezone_from_tzid(tzid))
        return zone;
    if (icaltimezone *zone = icaltimezone_get_builtin_timezone(tzid))
        return zone;
    // Some programs write their system's own names without describing the zone.
    const QByteArray known = QTimeZone::windowsIdToDefaultIanaId(tzid);
    return known.isEmpty() ? nullptr : icaltimezone_get_builtin_timezone(known.constData());
}

qint64 wallSeconds(const icaltimetype &wall)
{
    static const qint64 epoch = QDate(1970, 1, 1).toJulianDay();
    const qint64 days = QDate(wall.year, wall.month, wall.day).toJulianDay() - epoch;
    return days * 86400 + wall.hour * 3600 + wall.minute * 60 + wall.second;
}

icaltimetype utcTime(const QDateTime &time)
{
    return icaltime_from_timet_with_zone(time.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
}

} // namespace

IcalZones::IcalZones(icalcomponent *calendar)
    : m_calendar(calendar)
{
}

icaltimezone *IcalZones::zone(const char *tzid)
{
    const QByteArray name(tzid);
    const auto known = m_known.constFind(name);
    return known != m_known.cend() ? *known : *m_known.insert(name, zoneNamed(tzid, m_calendar));
}

EventTime ZonedTime::eventTime() const
{
    if (wall.is_date)
        return {EventTime::Kind::date, wallSeconds(wall)};
    if (zone == nullptr)
        return {EventTime::Kind::floating, wallSeconds(wall)};
    icaltimetype local = wall;
    const int offset = icaltimezone_get_utc_offset(zone, &local, nullptr);
    // A time that the clocks skip counts from before (RFC 5545, section 3.3.5); the library counts from
    // after.
    icaltimetype utc = wall;
    icaltime_adjust(&utc, 0, 0, 0, -offset);
    const int before = icaltimezone_get_utc_offset_of_utc_time(zone, &utc, nullptr);
    return {EventTime::Kind::instant, wallSeconds(wall) - before};
}

ZonedTime ZonedTime::addDays(int days) const
{
    ZonedTime later = *this;
    icaltime_adjust(&later.wall, days, 0, 0, 0);
    return later;
}

std::optional<ZonedTime> zonedTime(const icaltimetype &value, icalproperty *property, IcalZones &zones)
{
    if (icaltime_is_null_time(value) || !icaltime_is_valid_time(value) ||
        !QDate::isValid(value.year, value.month, value.day))
        return std::nullopt;
    ZonedTime time{value, nullptr};
    if (value.is_date)
        return time;
    if (icaltime_is_utc(value)) {
        time.zone = icaltimezone_get_utc_timezone();
    } else if (icalparameter *parameter = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)) {
        time.zone = zones.zone(icalparameter_get_tzid(parameter));
    }
    icaltime_set_timezone(&time.wall, time.zone);
    return time;
}

std::optional<ZonedTime> zonedTime(icalproperty *property, IcalZones &zones)
{
    icalvalue *value = property != nullptr ? icalproperty_get_value(property) : nullptr;
    if (value == nullptr)
        return std::nullopt;
    icaltimetype time = icaltime_null_time();
    switch (icalvalue_isa(value)) {
    case ICAL_DATE_VALUE:
        time = icalvalue_get_date(value);
        break;
    case ICAL_DATETIME_VALUE:
        time = icalvalue_get_datetime(value);
        break;
    case ICAL_DATETIMEDATE_VALUE:
        time = icalvalue_get_datetimedate(value);
        break;
    default:
        return std::nullopt;
    }
    return zonedTime(time, property, zones);
}

QByteArray newEventText(const NewCalendarEvent &event)
{
    const IcalComponent component(icalcomponent_new_vevent());
    icalcomponent_set_uid(component.get(), event.uid.toUtf8().constData());
    icalcomponent_set_dtstamp(component.get(), utcTime(QDateTime::currentDateTimeUtc()));
    icalcomponent_set_dtstart(component.get(), utcTime(event.start));
    icalcomponent_set_dtend(component.get(), utcTime(event.end));
    icalcomponent_set_summary(component.get(), event.title.toUtf8().constData());
    char *text = icalcomponent_as_ical_string_r(component.get());
    QByteArray encoded(text);
    icalmemory_free_buffer(text);
    return encoded;
}

QByteArray eventFingerprint(const QByteArray &event)
{
    static constexpr std::array kinds{
        ICAL_SUMMARY_PROPERTY,     ICAL_DTSTART_PROPERTY,  ICAL_DTEND_PROPERTY,      ICAL_DURATION_PROPERTY,
        ICAL_DESCRIPTION_PROPERTY, ICAL_LOCATION_PROPERTY, ICAL_RRULE_PROPERTY,      ICAL_RDATE_PROPERTY,
        ICAL_ATTENDEE_PROPERTY,    ICAL_ATTACH_PROPERTY,   ICAL_CATEGORIES_PROPERTY, ICAL_URL_PROPERTY};
    icalerror_set_errors_are_fatal(0);
    const IcalComponent component(icalparser_parse_string(event.constData()));
    if (!component || icalcomponent_isa(component.get()) != ICAL_VEVENT_COMPONENT)
        return {};
    QByteArray fingerprint;
    for (const icalproperty_kind kind : kinds) {
        for (icalproperty *property = icalcomponent_get_first_property(component.get(), kind);
             property != nullptr; property = icalcomponent_get_next_property(component.get(), kind)) {
            char *text = icalproperty_as_ical_string_r(property);
            fingerprint += text;
            icalmemory_free_buffer(text);
        }
    }
    for (icalcomponent *alarm = icalcomponent_get_first_component(component.get(), ICAL_VALARM_COMPONENT);
         alarm != nullptr; alarm = icalcomponent_get_next_component(component.get(), ICAL_VALARM_COMPONENT))
        fingerprint += "VALARM\n";
    return fingerprint;
}

} // namespace randblatt
