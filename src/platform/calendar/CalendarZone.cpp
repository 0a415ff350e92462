#include "platform/calendar/CalendarZone.h"

#include "platform/LocalTime.h"
#include "platform/calendar/Recurrence.h"

#include <QDate>
#include <QFileInfo>
#include <QTimeZone>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// No calendar tells of what was before or comes after.
QDateTime firstKnown()
{
    return {QDate(1900, 1, 1), QTime(0, 0), Qt::UTC};
}

QDateTime lastKnown()
{
    return {QDate(2100, 1, 1), QTime(0, 0), Qt::UTC};
}

// Of one observance, with two changes a month.
constexpr size_t maximalChanges = 4800;

qint64 wallSeconds(const icaltimetype &wall)
{
    static const qint64 epoch = QDate(1970, 1, 1).toJulianDay();
    const qint64 days = QDate(wall.year, wall.month, wall.day).toJulianDay() - epoch;
    return days * 86400 + wall.hour * 3600 + wall.minute * 60 + wall.second;
}

std::optional<qint64> offset(icalcomponent *observance, icalproperty_kind kind)
{
    icalproperty *property = icalcomponent_get_first_property(observance, kind);
    if (property == nullptr)
        return std::nullopt;
    return kind == ICAL_TZOFFSETFROM_PROPERTY ? icalproperty_get_tzoffsetfrom(property)
                                              : icalproperty_get_tzoffsetto(property);
}

/// The beginnings of an observance on the clocks before it.
std::vector<qint64> beginnings(icalcomponent *observance, qint64 start, qint64 offsetBefore)
{
    std::vector<qint64> found{start};
    for (icalproperty *property = icalcomponent_get_first_property(observance, ICAL_RDATE_PROPERTY);
         property != nullptr; property = icalcomponent_get_next_property(observance, ICAL_RDATE_PROPERTY)) {
        const icaltimetype time = icalproperty_get_rdate(property).time;
        if (!icaltime_is_null_time(time) && found.size() < maximalChanges)
            found.push_back(wallSeconds(time));
    }
    for (icalproperty *property = icalcomponent_get_first_property(observance, ICAL_RRULE_PROPERTY);
         property != nullptr; property = icalcomponent_get_next_property(observance, ICAL_RRULE_PROPERTY)) {
        const icalrecurrencetype value = icalproperty_get_rrule(property);
        auto rule = RecurrenceRule::from(value);
        if (!rule)
            continue;
        if (!icaltime_is_null_time(value.until))
            rule->until = wallSeconds(value.until) + (icaltime_is_utc(value.until) ? offsetBefore : 0);
        (void)Recurrence(*rule, start, false)
            .visit(firstKnown().toSecsSinceEpoch(), lastKnown().toSecsSinceEpoch(),
                   [&found](qint64 beginning) {
                       found.push_back(beginning);
                       return found.size() < maximalChanges;
                   });
    }
    return found;
}

/// Whether the system may be asked for a zone of that name, which becomes the name of a file.
bool isZoneName(const QByteArray &name)
{
    const auto isAllowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
               c == '+' || c == '-' || c == '/';
    };
    return !name.isEmpty() && name.front() != '/' && std::all_of(name.begin(), name.end(), isAllowed);
}

/// Whether the system has a zone of that name. The toolkit's list has no former names and none without a
/// place, and it takes any other word for a rule.
bool isKnown(const QByteArray &name)
{
    return QTimeZone::isTimeZoneIdAvailable(name) ||
           QFileInfo(u"/usr/share/zoneinfo/"_s + QString::fromLatin1(name)).isFile();
}

/// The system's name for a zone; empty if it knows none.
QByteArray systemName(const QByteArray &tzid)
{
    // Programs put a vendor's name and a version before it, between slashes.
    const bool hasPrefix = tzid.startsWith('/');
    for (qsizetype slash = hasPrefix ? 0 : -1;;) {
        QByteArray name = tzid.sliced(slash + 1);
        // Some write their system's own names without describing the zone.
        if (const QByteArray known = QTimeZone::windowsIdToDefaultIanaId(name); !known.isEmpty())
            name = known;
        if (isZoneName(name) && isKnown(name) && QTimeZone(name).isValid())
            return name;
        slash = hasPrefix ? tzid.indexOf('/', slash + 1) : -1;
        if (slash < 0)
            return {};
    }
}

} // namespace

const CalendarZone &CalendarZone::utc()
{
    static const CalendarZone zone;
    return zone;
}

std::optional<CalendarZone> CalendarZone::described(icalcomponent *zone)
{
    struct Beginning
    {
        qint64 at;
        qint64 before;
        qint64 after;
    };
    std::vector<Beginning> found;
    for (icalcomponent *observance = icalcomponent_get_first_component(zone, ICAL_ANY_COMPONENT);
         observance != nullptr; observance = icalcomponent_get_next_component(zone, ICAL_ANY_COMPONENT)) {
        icalproperty *start = icalcomponent_get_first_property(observance, ICAL_DTSTART_PROPERTY);
        const auto before = offset(observance, ICAL_TZOFFSETFROM_PROPERTY);
        const auto after = offset(observance, ICAL_TZOFFSETTO_PROPERTY);
        if (start == nullptr || !before || !after)
            continue;
        const icaltimetype begin = icalproperty_get_dtstart(start);
        if (icaltime_is_null_time(begin))
            continue;
        for (const qint64 wall : beginnings(observance, wallSeconds(begin), *before))
            found.push_back({wall - *before, *before, *after});
    }
    if (found.empty())
        return std::nullopt;
    std::stable_sort(found.begin(), found.end(),
                     [](const Beginning &a, const Beginning &b) { return a.at < b.at; });
    CalendarZone described;
    described.m_firstOffset = found.front().before;
    for (const Beginning &beginning : found)
        described.m_changes.push_back({beginning.at, beginning.after});
    return described;
}

bool CalendarZone::isNamed(const QByteArray &tzid)
{
    return !systemName(tzid).isEmpty();
}

std::optional<CalendarZone> CalendarZone::named(const QByteArray &tzid)
{
    const QByteArray name = systemName(tzid);
    if (name.isEmpty())
        return std::nullopt;
    const QTimeZone zone(name);
    CalendarZone read;
    read.m_firstOffset = zone.offsetFromUtc(firstKnown());
    const auto changes = zone.transitions(firstKnown(), lastKnown());
    for (const QTimeZone::OffsetData &change : changes)
        read.m_changes.push_back({change.atUtc.toSecsSinceEpoch(), change.offsetFromUtc});
    return read;
}

qint64 CalendarZone::offsetAt(qint64 seconds) const
{
    const auto next = std::upper_bound(m_changes.begin(), m_changes.end(), seconds,
                                       [](qint64 at, const Change &change) { return at < change.at; });
    return next == m_changes.begin() ? m_firstOffset : std::prev(next)->offset;
}

qint64 CalendarZone::seconds(qint64 wall) const
{
    if (m_changes.empty())
        return wall - m_firstOffset;
    return secondsOfWallClock(wall, [this](qint64 at) { return offsetAt(at); });
}

} // namespace randblatt
