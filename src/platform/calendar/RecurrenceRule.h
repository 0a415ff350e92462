#pragma once

#include <QtGlobal>

#include <libical/ical.h>

#include <optional>
#include <vector>

namespace randblatt {

/// A rule by which an event recurs (RFC 5545, section 3.3.10, and RFC 7529). All times are seconds since 1970
/// on the wall clock, counted as if it showed UTC.
struct RecurrenceRule
{
    enum class Frequency { secondly, minutely, hourly, daily, weekly, monthly, yearly };
    /// What becomes of a day that its month does not have.
    enum class Skip { omit, backward, forward };
    /// A day of the week, and which one of its month or year: 0 for all, negative from the end.
    struct Day
    {
        int weekday; ///< Monday is 1
        int position;
    };

    /// Reads the library's form of a rule; none if it does not recur.
    [[nodiscard]] static std::optional<RecurrenceRule> from(const icalrecurrencetype &rule);

    Frequency frequency = Frequency::yearly;
    int interval = 1;
    /// 0 for a rule that does not count.
    int count = 0;
    /// The last moment at which the event may start.
    std::optional<qint64> until = {};
    int weekStart = 1;
    Skip skip = Skip::omit;
    std::vector<int> seconds = {};
    std::vector<int> minutes = {};
    std::vector<int> hours = {};
    std::vector<Day> days = {};
    std::vector<int> monthDays = {};
    std::vector<int> yearDays = {};
    std::vector<int> weeks = {};
    std::vector<int> months = {};
    std::vector<int> positions = {};
};

} // namespace randblatt
