#pragma once

#include <QDateTime>

namespace randblatt {

/// The time on the user's clock; one that the clocks skip counts from before they do, as 02:30 is 03:30 then.
[[nodiscard]] inline QDateTime localTime(const QDate &date, const QTime &time)
{
    const QDateTime local(date, time);
    return local.isValid() ? local : QDateTime(date, time.addSecs(3600));
}

} // namespace randblatt
