#pragma once

#include <QDateTime>

namespace randblatt {

/// The seconds since 1970 of a wall-clock time, given as if it were written in UTC, where `offsetAt` tells
/// how far clocks are ahead of UTC at such seconds. A time that the clocks show twice is the first one; one
/// that they skip counts from before they do, as 02:30 is 03:30 then (RFC 5545, section 3.3.5).
template <typename OffsetAt>
[[nodiscard]] qint64 secondsOfWallClock(qint64 wall, const OffsetAt &offsetAt)
{
    constexpr qint64 day = 86400;
    // No zone changes its clocks twice within two days.
    const qint64 before = offsetAt(wall - day);
    const qint64 after = offsetAt(wall + day);
    if (before == after || offsetAt(wall - before) == before || offsetAt(wall - after) != after)
        return wall - before;
    return wall - after;
}

/// The time on the user's clock, as secondsOfWallClock() understands it.
[[nodiscard]] inline QDateTime localTime(const QDate &date, const QTime &time)
{
    const QDateTime wall(date, time, Qt::UTC);
    if (!wall.isValid())
        return {};
    const qint64 seconds = secondsOfWallClock(wall.toSecsSinceEpoch(), [](qint64 at) {
        return static_cast<qint64>(QDateTime::fromSecsSinceEpoch(at).offsetFromUtc());
    });
    return QDateTime::fromSecsSinceEpoch(seconds).addMSecs(time.msec());
}

} // namespace randblatt
