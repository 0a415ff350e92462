#pragma once

#include <QByteArray>

#include <libical/ical.h>

#include <memory>
#include <optional>
#include <vector>

namespace randblatt {

/// How far the clocks of a time zone are ahead of UTC, and when that changes.
class CalendarZone
{
public:
    [[nodiscard]] static const CalendarZone &utc();
    /// The zone that a VTIMEZONE describes (RFC 5545, section 3.6.5); none if it tells of no time.
    [[nodiscard]] static std::optional<CalendarZone> described(icalcomponent *zone);
    /// Whether named() knows a zone of that name.
    [[nodiscard]] static bool isNamed(const QByteArray &tzid);
    /// The system's zone of that name, or of what programs make of its name; none if it is not known.
    [[nodiscard]] static std::optional<CalendarZone> named(const QByteArray &tzid);

    /// The seconds since 1970 of a time on the zone's clocks, given as if it were written in UTC; a time that
    /// they show twice or skip as in secondsOfWallClock().
    [[nodiscard]] qint64 seconds(qint64 wall) const;
    /// What the zone's clocks show then, in the same form.
    [[nodiscard]] qint64 wall(qint64 seconds) const { return seconds + offsetAt(seconds); }

private:
    struct Change
    {
        qint64 at;
        qint64 offset;
    };

    [[nodiscard]] qint64 offsetAt(qint64 seconds) const;

    qint64 m_firstOffset = 0;
    /// In order.
    std::vector<Change> m_changes;
};

} // namespace randblatt
