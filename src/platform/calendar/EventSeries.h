#pragma once

#include "platform/calendar/Ical.h"
#include "platform/calendar/Recurrence.h"

#include <QSet>

#include <memory>
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
        /// When it would start if nothing had been changed, which names it.
        qint64 id;
        EventTime start;
        EventTime end;
        /// The number of what has changed this and all that follow; none for the series as it was.
        std::optional<size_t> change;
    };

    /// How an occurrence and all that follow differ from the series (RANGE=THISANDFUTURE, RFC 5545, section
    /// 3.2.13).
    struct Change
    {
        ZonedTime from;
        /// How much later they start on the wall clock.
        qint64 shift = 0;
        EventLength length;
        bool isCancelled = false;
        /// Whatever the caller knows it by.
        size_t number = 0;
    };

    /// Reads the rules of `event`, which starts at `start`. The zone of `start` must outlive the series.
    EventSeries(icalcomponent *event, const ZonedTime &start, IcalZones &zones);

    /// Whether the component has rules or further dates at all.
    [[nodiscard]] static bool isRecurring(icalcomponent *event);
    /// How the series counts a time that names one of its occurrences. A time without a zone is in that of
    /// the series.
    [[nodiscard]] qint64 id(const ZonedTime &time) const;
    /// Leaves out the occurrence of that name, or those of a whole day.
    void exclude(const ZonedTime &time);
    void change(const Change &change);
    /// The occurrences that may overlap the given seconds since 1970, in order of their starts. Wall-clock
    /// times are taken as in UTC, so the caller allows for a day on both sides. A rule that takes too long is
    /// given up for good; then only the first occurrence and those named one by one are left of it.
    [[nodiscard]] std::vector<Occurrence> occurrences(qint64 from, qint64 until) const;

    /// Whether a rule has been given up since this was last asked.
    [[nodiscard]] bool takeGivenUp();

private:
    /// A start that is named for itself, with a length of its own.
    struct Added
    {
        ZonedTime start;
        std::optional<EventLength> length;
    };
    struct Rule
    {
        Recurrence recurrence;
        /// Once it has taken too long it is not asked again.
        mutable bool isGivenUp = false;
    };

    void readRules(icalcomponent *event);
    void readDates(icalcomponent *event, IcalZones &zones);
    void readScaled(const icalrecurrencetype &rule);
    [[nodiscard]] bool isExcluded(const ZonedTime &start) const;
    [[nodiscard]] std::optional<Occurrence> occurrence(const Added &added) const;

    ZonedTime m_start;
    EventLength m_length;
    std::vector<Rule> m_rules;
    std::vector<Added> m_added;
    /// In order of their beginnings.
    std::vector<Change> m_changes;
    QSet<qint64> m_excludedTimes;
    /// Days on the wall clock, in seconds, on which nothing takes place.
    QSet<qint64> m_excludedDays;
    mutable bool m_hasGivenUp = false;
};

} // namespace randblatt
