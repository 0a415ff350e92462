#pragma once

#include "platform/calendar/Ical.h"

#include <QSet>

#include <vector>

namespace randblatt {

/// How long an event lasts: whole days on the wall clock, then seconds.
struct EventLength
{
    int days = 0;
    qint64 seconds = 0;

    /// When an event of this length ends that starts at `start`.
    [[nodiscard]] EventTime end(const ZonedTime &start) const;
    /// At least as many seconds as an event of this length lasts.
    [[nodiscard]] qint64 upperBound() const { return (days + 1) * qint64(86400) + seconds; }
};

/// The event's length from its DTEND or DURATION; never negative, and at least a day for an all-day event.
[[nodiscard]] EventLength eventLength(icalcomponent *event, const ZonedTime &start, IcalZones &zones);

/// The times of a recurring event (RFC 5545, section 3.8.5).
class EventSeries
{
public:
    struct Occurrence
    {
        EventTime start;
        EventTime end;
    };

    /// Reads the rules of `event`, which starts at `start`. The zone of `start` must outlive the series.
    EventSeries(icalcomponent *event, const ZonedTime &start, IcalZones &zones);

    /// Whether the component has rules or further dates at all.
    [[nodiscard]] static bool isRecurring(icalcomponent *event);
    /// Leaves out the occurrence that would start at `start`.
    void exclude(const EventTime &start);
    /// The occurrences that may overlap the given seconds since 1970, in order of their starts. Wall-clock
    /// times are taken as in UTC, so the caller allows for a day on both sides.
    [[nodiscard]] std::vector<Occurrence> occurrences(qint64 from, qint64 until) const;

private:
    void readRules(icalcomponent *event, IcalZones &zones);
    void collect(const icalrecurrencetype &rule, qint64 from, qint64 until,
                 std::vector<ZonedTime> &starts) const;
    [[nodiscard]] bool isExcluded(const ZonedTime &start) const;

    ZonedTime m_start;
    EventLength m_length;
    std::vector<icalrecurrencetype> m_rules;
    std::vector<ZonedTime> m_added;
    QSet<qint64> m_excludedTimes;
    /// Days on the wall clock, in seconds, on which nothing takes place.
    QSet<qint64> m_excludedDays;
};

} // namespace randblatt
