#include "platform/calendar/RecurrenceRule.h"

#include <algorithm>
#include <limits>
#include <span>

namespace randblatt {

namespace {

constexpr int neverMet = std::numeric_limits<int>::max();

std::vector<int> values(std::span<const short> list, int lowest, int highest)
{
    std::vector<int> values;
    if (list[0] == ICAL_RECURRENCE_ARRAY_MAX)
        return values;
    for (const short value : list) {
        if (value == ICAL_RECURRENCE_ARRAY_MAX)
            break;
        if (value >= lowest && value <= highest && (value != 0 || lowest == 0))
            values.push_back(value);
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    // A part of which nothing makes sense is not the same as none.
    if (values.empty())
        values.push_back(neverMet);
    return values;
}

/// Monday is 1; the library begins with Sunday.
int weekday(int libraryWeekday)
{
    return libraryWeekday == ICAL_SUNDAY_WEEKDAY ? 7 : libraryWeekday - 1;
}

} // namespace

std::optional<RecurrenceRule> RecurrenceRule::from(const icalrecurrencetype &rule)
{
    if (rule.freq == ICAL_NO_RECURRENCE)
        return std::nullopt;
    RecurrenceRule read;
    // The library's frequencies are in the same order.
    read.frequency = static_cast<Frequency>(rule.freq);
    read.interval = std::max<int>(1, rule.interval);
    read.count = std::max(0, rule.count);
    read.weekStart = rule.week_start == ICAL_NO_WEEKDAY ? 1 : weekday(rule.week_start);
    if (rule.rscale != nullptr && rule.skip == ICAL_SKIP_BACKWARD)
        read.skip = Skip::backward;
    else if (rule.rscale != nullptr && rule.skip == ICAL_SKIP_FORWARD)
        read.skip = Skip::forward;
    read.seconds = values(rule.by_second, 0, 60);
    // A wall clock here shows no leap second.
    std::erase(read.seconds, 60);
    if (read.seconds.empty() && rule.by_second[0] == 60)
        read.seconds = {59};
    read.minutes = values(rule.by_minute, 0, 59);
    read.hours = values(rule.by_hour, 0, 23);
    read.monthDays = values(rule.by_month_day, -31, 31);
    read.yearDays = values(rule.by_year_day, -366, 366);
    read.weeks = values(rule.by_week_no, -53, 53);
    // Leap months, which the library marks, are far above.
    read.months = values(rule.by_month, 1, 12);
    read.positions = values(rule.by_set_pos, -366, 366);
    for (const short day : rule.by_day) {
        if (day == ICAL_RECURRENCE_ARRAY_MAX)
            break;
        read.days.push_back(
            {weekday(icalrecurrencetype_day_day_of_week(day)), icalrecurrencetype_day_position(day)});
    }
    return read;
}

} // namespace randblatt
