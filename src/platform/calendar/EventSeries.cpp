#include "platform/calendar/EventSeries.h"

#include <algorithm>
#include <array>

namespace randblatt {

namespace {

// A rule may recur every second for ever; nobody reads more than this.
constexpr int maximalOccurrences = 10'000;
constexpr int maximalSteps = 200'000;

// In days; the library counts them one by one, and overflows with what a careless program may write.
constexpr qint64 longestDuration = 36'600;

// No wall clock is further from UTC, in seconds.
constexpr qint64 longestOffset = 86400;

EventTime day(const ZonedTime &time)
{
    ZonedTime date = time;
    date.wall.is_date = 1;
    date.wall.hour = date.wall.minute = date.wall.second = 0;
    return date.eventTime();
}

template <typename Visitor>
void forEachProperty(icalcomponent *component, icalproperty_kind kind, Visitor visit)
{
    for (icalproperty *property = icalcomponent_get_first_property(component, kind); property != nullptr;
         property = icalcomponent_get_next_property(component, kind))
        visit(property);
}

/// Gives a rule's end the form of the start: a time on its wall clock. A date means the whole of that day.
void adaptEnd(icalrecurrencetype &rule, const ZonedTime &start)
{
    if (icaltime_is_null_time(rule.until))
        return;
    if (rule.until.is_date && !start.wall.is_date) {
        rule.until.is_date = 0;
        rule.until.hour = 23;
        rule.until.minute = rule.until.second = 59;
    } else if (icaltime_is_utc(rule.until) && start.zone != nullptr) {
        rule.until = icaltime_convert_to_zone(rule.until, start.zone);
    }
    rule.until.zone = nullptr;
}

/// The step of a rule of less than a day, in seconds; 0 for any other rule.
qint64 shortStep(const icalrecurrencetype &rule)
{
    switch (rule.freq) {
    case ICAL_HOURLY_RECURRENCE:
        return rule.interval * 3600LL;
    case ICAL_MINUTELY_RECURRENCE:
        return rule.interval * 60LL;
    case ICAL_SECONDLY_RECURRENCE:
        return rule.interval;
    default:
        return 0;
    }
}

/// Whether a rule names hours, days or the like, and is more than a step.
bool hasParts(const icalrecurrencetype &rule)
{
    const std::array firsts{rule.by_second[0],  rule.by_minute[0],    rule.by_hour[0],
                            rule.by_day[0],     rule.by_month_day[0], rule.by_year_day[0],
                            rule.by_week_no[0], rule.by_month[0],     rule.by_set_pos[0]};
    return std::any_of(firsts.begin(), firsts.end(),
                       [](short first) { return first != ICAL_RECURRENCE_ARRAY_MAX; });
}

/// A rule's iterator that begins with the start, or, where that gives the same occurrences, shortly before
/// `from`, seconds as if written in UTC.
IcalIterator iteratorFrom(const icalrecurrencetype &rule, const icaltimetype &start, qint64 from)
{
    const qint64 begin = ZonedTime{start, nullptr}.eventTime().seconds;
    // A rule that counts has to be counted from its start.
    if (rule.count != 0 || begin >= from)
        return IcalIterator(icalrecur_iterator_new(rule, start));
    const auto at = [&start](qint64 seconds) {
        return icaltime_from_timet_with_zone(seconds, start.is_date, nullptr);
    };
    // The library keeps the rhythm of days and longer steps when it skips, but not that of shorter ones.
    const qint64 step = shortStep(rule);
    if (step > 0 && !hasParts(rule))
        return IcalIterator(icalrecur_iterator_new(rule, at(from - (from - begin) % step)));
    IcalIterator iterator(icalrecur_iterator_new(rule, start));
    if (iterator && step == 0)
        icalrecur_iterator_set_start(iterator.get(), at(from));
    return iterator;
}

} // namespace

EventTime EventLength::end(const ZonedTime &start) const
{
    return (days != 0 ? start.addDays(days) : start).eventTime().later(seconds);
}

EventLength eventLength(icalcomponent *event, const ZonedTime &start, IcalZones &zones)
{
    EventLength length;
    const EventTime begin = start.eventTime();
    icalproperty *duration = icalcomponent_get_first_property(event, ICAL_DURATION_PROPERTY);
    if (const auto end = zonedTime(icalcomponent_get_first_property(event, ICAL_DTEND_PROPERTY), zones)) {
        // Of different kinds, one of the two is wrong; the days are what both have.
        const bool comparable = end->eventTime().kind == begin.kind;
        length.seconds =
            comparable ? end->eventTime().seconds - begin.seconds : day(*end).seconds - day(start).seconds;
    } else if (duration != nullptr) {
        const icaldurationtype value = icalproperty_get_duration(duration);
        if (!value.is_neg) {
            length.days = static_cast<int>(std::min(value.weeks * 7LL + value.days, longestDuration));
            length.seconds = std::min(value.hours * 3600LL + value.minutes * 60LL + value.seconds,
                                      longestDuration * 86400);
        }
    }
    length.seconds = std::max<qint64>(0, length.seconds);
    if (start.wall.is_date && length.days == 0 && length.seconds < 86400)
        length.seconds = 86400;
    return length;
}

EventSeries::EventSeries(icalcomponent *event, const ZonedTime &start, IcalZones &zones)
    : m_start(start)
    , m_length(eventLength(event, start, zones))
{
    readRules(event, zones);
}

bool EventSeries::isRecurring(icalcomponent *event)
{
    return icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY) != nullptr ||
           icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY) != nullptr;
}

void EventSeries::readRules(icalcomponent *event, IcalZones &zones)
{
    forEachProperty(event, ICAL_RRULE_PROPERTY, [&](icalproperty *property) {
        icalrecurrencetype rule = icalproperty_get_rrule(property);
        if (rule.freq == ICAL_NO_RECURRENCE)
            return;
        // The text belongs to the component, and only the Gregorian calendar is known here.
        rule.rscale = nullptr;
        adaptEnd(rule, m_start);
        m_rules.push_back(rule);
    });
    m_added.push_back(m_start);
    forEachProperty(event, ICAL_RDATE_PROPERTY, [&](icalproperty *property) {
        const icaldatetimeperiodtype value = icalproperty_get_rdate(property);
        const icaltimetype &time = icaltime_is_null_time(value.time) ? value.period.start : value.time;
        if (const auto added = zonedTime(time, property, zones))
            m_added.push_back(*added);
    });
    forEachProperty(event, ICAL_EXDATE_PROPERTY, [&](icalproperty *property) {
        if (const auto time = zonedTime(property, zones))
            exclude(time->eventTime());
    });
}

void EventSeries::exclude(const EventTime &start)
{
    if (start.kind == EventTime::Kind::date)
        m_excludedDays.insert(start.seconds);
    else
        m_excludedTimes.insert(start.seconds);
}

bool EventSeries::isExcluded(const ZonedTime &start) const
{
    return (!m_excludedTimes.isEmpty() && m_excludedTimes.contains(start.eventTime().seconds)) ||
           (!m_excludedDays.isEmpty() && m_excludedDays.contains(day(start).seconds));
}

void EventSeries::collect(const icalrecurrencetype &rule, qint64 from, qint64 until,
                          std::vector<ZonedTime> &starts) const
{
    // On the wall clock alone: with a zone the library would go on from an hour that the clocks skip as if
    // the rule had been moved.
    icaltimetype first = m_start.wall;
    first.zone = nullptr;
    const IcalIterator iterator = iteratorFrom(rule, first, from - longestOffset);
    if (!iterator)
        return;
    for (int step = 0; step < maximalSteps; ++step) {
        ZonedTime start{icalrecur_iterator_next(iterator.get()), m_start.zone};
        if (icaltime_is_null_time(start.wall))
            return;
        icaltime_set_timezone(&start.wall, m_start.zone);
        const qint64 seconds = start.eventTime().seconds;
        if (seconds >= until || starts.size() >= maximalOccurrences)
            return;
        if (seconds >= from)
            starts.push_back(start);
    }
}

std::vector<EventSeries::Occurrence> EventSeries::occurrences(qint64 from, qint64 until) const
{
    const qint64 earliest = from - m_length.upperBound();
    std::vector<ZonedTime> starts;
    for (const icalrecurrencetype &rule : m_rules)
        collect(rule, earliest, until, starts);
    for (const ZonedTime &added : m_added) {
        const qint64 seconds = added.eventTime().seconds;
        if (seconds >= earliest && seconds < until)
            starts.push_back(added);
    }
    std::vector<Occurrence> found;
    found.reserve(starts.size());
    for (const ZonedTime &start : starts) {
        if (!isExcluded(start))
            found.push_back({start.eventTime(), m_length.end(start)});
    }
    const auto isEarlier = [](const Occurrence &a, const Occurrence &b) {
        return a.start.seconds < b.start.seconds;
    };
    const auto isSame = [](const Occurrence &a, const Occurrence &b) { return a.start == b.start; };
    std::stable_sort(found.begin(), found.end(), isEarlier);
    found.erase(std::unique(found.begin(), found.end(), isSame), found.end());
    return found;
}

} // namespace randblatt
