#pragma once

#include "platform/LocalTime.h"

#include <QDateTime>

namespace randblatt {

/// A point in time as a calendar writes it.
struct EventTime
{
    enum class Kind {
        instant,  ///< the same moment everywhere
        floating, ///< a wall-clock time, wherever the user is
        date,     ///< a whole day
    };

    Kind kind = Kind::instant;
    /// Seconds since 1970; those of a floating time or a date are counted as if it were written in UTC.
    qint64 seconds = 0;

    /// The time on the user's clock; a date is its first moment there.
    [[nodiscard]] QDateTime toLocal() const
    {
        if (kind == Kind::instant)
            return QDateTime::fromSecsSinceEpoch(seconds);
        const QDateTime wall = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
        return kind == Kind::date ? wall.date().startOfDay() : localTime(wall.date(), wall.time());
    }

    /// The same kind of time, `length` seconds later.
    [[nodiscard]] EventTime later(qint64 length) const { return {kind, seconds + length}; }

    friend bool operator==(const EventTime &, const EventTime &) = default;
};

} // namespace randblatt
