#include "platform/calendar/EventSeries.h"

#include <algorithm>

namespace randblatt {

namespace {

// A rule may recur every second for ever; nobody reads more than this.
constexpr size_t maximalOccurrences = 10'000;

// In days; nobody plans for longer, and careless programs may write what overflows.
constexpr qint64 longestDuration = 36'600;

constexpr qint64 secondsOfDay = 86400;

// No wall clock is further from UTC.
constexpr qint64 longestOffset = secondsOfDay;

template <typename Visitor>
void forEachProperty(icalcomponent *component, icalproperty_kind kind, Visitor visit)
{
    for (icalproperty *property = icalcomponent_get_first_property(component, kind); property != nullptr;
         property = icalcomponent_get_next_property(component, kind))
        visit(property);
}

EventLength lengthOf(const icaldurationtype &duration)
{
    EventLength length;
    if (duration.is_neg)
        return length;
    length.days = static_cast<int>(std::min(duration.weeks * 7LL + duration.days, longestDuration));
    length.seconds = std::min(duration.hours * 3600LL + duration.minutes * 60LL + duration.seconds,
                              longestDuration * secondsOfDay);
    return length;
}

EventLength lengthBetween(const ZonedTime &start, const ZonedTime &end)
{
    // Of different kinds, one of the two is wrong; the days are what both have.
    const EventTime begin = start.eventTime();
    const EventTime finish = end.eventTime();
    const qint64 seconds =
        begin.kind == finish.kind ? finish.seconds - begin.seconds : end.day().wall - start.day().wall;
    return {0, std::max<qint64>(0, seconds)};
}

/// The last wall-clock time of a rule that has an end. A date means the whole of that day.
std::optional<qint64> lastStart(const icalrecurrencetype &rule, const ZonedTime &start)
{
    const icaltimetype &until = rule.until;
    if (icaltime_is_null_time(until) || !QDate::isValid(until.year, until.month, until.day))
        return std::nullopt;
    IcalZones none;
    const auto end = zonedTime(until, nullptr, none);
    if (!end)
        return std::nullopt;
    if (end->isDate)
        return end->wall + (start.isDate ? 0 : secondsOfDay - 1);
    return end->zone != nullptr && start.zone != nullptr ? start.zone->wall(end->eventTime().seconds)
                                                         : end->wall;
}

} // namespace

EventTime EventLength::end(const ZonedTime &start) const
{
    return start.shifted(days * secondsOfDay).eventTime().later(seconds);
}

EventLength eventLength(icalcomponent *event, const ZonedTime &start, IcalZones &zones)
{
    EventLength length;
    icalproperty *duration = icalcomponent_get_first_property(event, ICAL_DURATION_PROPERTY);
    if (const auto end = zonedTime(icalcomponent_get_first_property(event, ICAL_DTEND_PROPERTY), zones))
        length = lengthBetween(start, *end);
    else if (duration != nullptr)
        length = lengthOf(icalproperty_get_duration(duration));
    if (start.isDate && length.days == 0 && length.seconds < secondsOfDay)
        length.seconds = secondsOfDay;
    return length;
}

EventSeries::EventSeries(icalcomponent *event, const ZonedTime &start, IcalZones &zones)
    : m_start(start)
    , m_length(eventLength(event, start, zones))
{
    m_added.push_back({start, {}});
    readRules(event);
    readDates(event, zones);
}

bool EventSeries::isRecurring(icalcomponent *event)
{
    return icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY) != nullptr ||
           icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY) != nullptr;
}

void EventSeries::readRules(icalcomponent *event)
{
    forEachProperty(event, ICAL_RRULE_PROPERTY, [this](icalproperty *property) {
        const icalrecurrencetype value = icalproperty_get_rrule(property);
        if (value.rscale != nullptr && qstricmp(value.rscale, "GREGORIAN") != 0) {
            readScaled(value);
        } else if (auto rule = RecurrenceRule::from(value)) {
            rule->until = lastStart(value, m_start);
            m_rules.push_back({Recurrence(*rule, m_start.wall, m_start.isDate)});
        }
    });
}

/// A rule in another calendar than the Gregorian (RFC 7529), which the library knows. Its iterator comes back
/// from rules of years and months alone; others are left at their first occurrence.
void EventSeries::readScaled(const icalrecurrencetype &rule)
{
    if (rule.freq != ICAL_YEARLY_RECURRENCE && rule.freq != ICAL_MONTHLY_RECURRENCE) {
        m_hasGivenUp = true;
        return;
    }
    icalrecurrencetype bounded = rule;
    const auto until = lastStart(rule, m_start);
    bounded.until = icaltime_null_time();
    const icaltimetype first = icaltime_from_timet_with_zone(m_start.wall, m_start.isDate ? 1 : 0, nullptr);
    const std::unique_ptr<icalrecur_iterator, decltype(&icalrecur_iterator_free)> iterator(
        icalrecur_iterator_new(bounded, first), &icalrecur_iterator_free);
    constexpr int twoCenturies = 2400;
    for (int number = 0; iterator && number < twoCenturies; ++number) {
        icaltimetype next = icalrecur_iterator_next(iterator.get());
        if (icaltime_is_null_time(next))
            return;
        const qint64 wall = icaltime_as_timet(next);
        if (until && wall > *until)
            return;
        m_added.push_back({{wall, m_start.isDate, m_start.zone}, {}});
    }
}

void EventSeries::readDates(icalcomponent *event, IcalZones &zones)
{
    forEachProperty(event, ICAL_RDATE_PROPERTY, [&](icalproperty *property) {
        const icaldatetimeperiodtype value = icalproperty_get_rdate(property);
        if (!icaltime_is_null_time(value.time)) {
            if (const auto added = zonedTime(value.time, property, zones))
                m_added.push_back({*added, {}});
            return;
        }
        const auto added = zonedTime(value.period.start, property, zones);
        if (!added)
            return;
        const auto end = zonedTime(value.period.end, property, zones);
        m_added.push_back({*added, end ? lengthBetween(*added, *end) : lengthOf(value.period.duration)});
    });
    forEachProperty(event, ICAL_EXDATE_PROPERTY, [&](icalproperty *property) {
        if (const auto time = zonedTime(property, zones))
            exclude(*time);
    });
}

qint64 EventSeries::id(const ZonedTime &time) const
{
    if (m_start.isDate || time.isDate)
        return time.day().wall;
    if (time.zone == nullptr && m_start.zone != nullptr)
        return m_start.zone->seconds(time.wall);
    if (time.zone != nullptr && m_start.zone == nullptr) {
        const QDateTime local = time.eventTime().toLocal();
        return QDateTime(local.date(), local.time(), Qt::UTC).toSecsSinceEpoch();
    }
    return time.eventTime().seconds;
}

void EventSeries::exclude(const ZonedTime &time)
{
    (time.isDate || m_start.isDate ? m_excludedDays : m_excludedTimes).insert(id(time));
}

void EventSeries::change(const Change &change)
{
    const auto later =
        std::upper_bound(m_changes.begin(), m_changes.end(), change,
                         [this](const Change &a, const Change &b) { return id(a.from) < id(b.from); });
    m_changes.insert(later, change);
}

bool EventSeries::isExcluded(const ZonedTime &start) const
{
    return (!m_excludedTimes.isEmpty() && m_excludedTimes.contains(id(start))) ||
           (!m_excludedDays.isEmpty() && m_excludedDays.contains(start.day().wall));
}

std::optional<EventSeries::Occurrence> EventSeries::occurrence(const Added &added) const
{
    if (isExcluded(added.start))
        return std::nullopt;
    const qint64 name = id(added.start);
    const auto later =
        std::upper_bound(m_changes.begin(), m_changes.end(), name,
                         [this](qint64 value, const Change &change) { return value < id(change.from); });
    if (later == m_changes.begin())
        return Occurrence{
            name, added.start.eventTime(), added.length.value_or(m_length).end(added.start), {}};
    const Change &change = *std::prev(later);
    if (change.isCancelled)
        return std::nullopt;
    const ZonedTime moved = added.start.shifted(change.shift);
    return Occurrence{name, moved.eventTime(), change.length.end(moved), change.number};
}

std::vector<EventSeries::Occurrence> EventSeries::occurrences(qint64 from, qint64 until) const
{
    qint64 longest = m_length.upperBound();
    qint64 earlier = 0;
    qint64 later = 0;
    for (const Change &change : m_changes) {
        longest = std::max(longest, change.length.upperBound());
        earlier = std::max(earlier, -change.shift);
        later = std::max(later, change.shift);
    }
    std::vector<Added> starts;
    const qint64 first = from - longest - later - longestOffset;
    const qint64 last = until + earlier + longestOffset;
    for (const Rule &rule : m_rules) {
        const size_t before = starts.size();
        if (!rule.isGivenUp && !rule.recurrence.visit(first, last, [&](qint64 wall) {
                starts.push_back({{wall, m_start.isDate, m_start.zone}, {}});
                return starts.size() < maximalOccurrences;
            })) {
            rule.isGivenUp = m_hasGivenUp = true;
            starts.resize(before);
        }
    }
    for (const Added &added : m_added) {
        const qint64 length = added.length ? added.length->upperBound() : longest;
        if (added.start.wall >= from - length - later - longestOffset && added.start.wall < last)
            starts.push_back(added);
    }
    std::vector<Occurrence> found;
    found.reserve(starts.size());
    for (const Added &start : starts) {
        if (const auto one = occurrence(start))
            found.push_back(*one);
    }
    std::stable_sort(found.begin(), found.end(), [](const Occurrence &a, const Occurrence &b) {
        return a.start.seconds != b.start.seconds ? a.start.seconds < b.start.seconds
                                                  : a.end.seconds > b.end.seconds;
    });
    // Of two that start together the longer one stays.
    const auto isSame = [](const Occurrence &a, const Occurrence &b) { return a.start == b.start; };
    found.erase(std::unique(found.begin(), found.end(), isSame), found.end());
    return found;
}

bool EventSeries::takeGivenUp()
{
    return std::exchange(m_hasGivenUp, false);
}

} // namespace randblatt
