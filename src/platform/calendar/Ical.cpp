#include "platform/calendar/Ical.h"

#include <array>

namespace randblatt {

namespace {

constexpr qint64 secondsOfDay = 86400;

qint64 wallSeconds(const icaltimetype &wall)
{
    static const qint64 epoch = QDate(1970, 1, 1).toJulianDay();
    const qint64 days = QDate(wall.year, wall.month, wall.day).toJulianDay() - epoch;
    return days * secondsOfDay + (wall.is_date ? 0 : wall.hour * 3600 + wall.minute * 60 + wall.second);
}

/// An all-day event's day, which is the same all over the world.
icaltimetype day(const QDateTime &time)
{
    icaltimetype day = icaltime_null_date();
    time.date().getDate(&day.year, &day.month, &day.day);
    return day;
}

icaltimetype utcTime(const QDateTime &time)
{
    return icaltime_from_timet_with_zone(time.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
}

} // namespace

void IcalZones::add(icalcomponent *zone)
{
    icalproperty *name = icalcomponent_get_first_property(zone, ICAL_TZID_PROPERTY);
    const char *tzid = name != nullptr ? icalproperty_get_tzid(name) : nullptr;
    if (tzid == nullptr)
        return;
    if (auto described = CalendarZone::described(zone))
        m_known.try_emplace(tzid, std::move(described));
}

const CalendarZone *IcalZones::zone(const QByteArray &tzid)
{
    auto known = m_known.find(tzid);
    if (known == m_known.end())
        known = m_known.emplace(tzid, CalendarZone::named(tzid)).first;
    return known->second ? &*known->second : nullptr;
}

EventTime ZonedTime::eventTime() const
{
    if (isDate)
        return {EventTime::Kind::date, wall};
    if (zone == nullptr)
        return {EventTime::Kind::floating, wall};
    return {EventTime::Kind::instant, zone->seconds(wall)};
}

ZonedTime ZonedTime::day() const
{
    const qint64 within = wall % secondsOfDay;
    return {wall - (within < 0 ? within + secondsOfDay : within), true, nullptr};
}

QString decodedText(const char *text)
{
    if (text == nullptr)
        return {};
    const QUtf8StringView view(text);
    return view.isValidUtf8() ? view.toString() : QString::fromLatin1(text);
}

QString textOf(icalcomponent *component, icalproperty_kind kind)
{
    icalproperty *property = icalcomponent_get_first_property(component, kind);
    icalvalue *value = property != nullptr ? icalproperty_get_value(property) : nullptr;
    return value != nullptr ? decodedText(icalvalue_get_text(value)) : QString();
}

std::optional<ZonedTime> zonedTime(const icaltimetype &value, icalproperty *property, IcalZones &zones)
{
    if (icaltime_is_null_time(value) || !icaltime_is_valid_time(value) ||
        !QDate::isValid(value.year, value.month, value.day))
        return std::nullopt;
    ZonedTime time{wallSeconds(value), value.is_date != 0, nullptr};
    if (time.isDate)
        return time;
    icalparameter *parameter =
        property != nullptr ? icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER) : nullptr;
    if (icaltime_is_utc(value))
        time.zone = &CalendarZone::utc();
    else if (parameter != nullptr)
        time.zone = zones.zone(icalparameter_get_tzid(parameter));
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
    icalcomponent_set_dtstart(component.get(), event.allDay ? day(event.start) : utcTime(event.start));
    icalcomponent_set_dtend(component.get(), event.allDay ? day(event.end) : utcTime(event.end));
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
