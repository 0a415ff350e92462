#include "platform/calendar/Recurrence.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace randblatt {

namespace {

using Frequency = RecurrenceRule::Frequency;
using namespace std::chrono;

constexpr qint64 secondsOfDay = 86400;
// Days and times that are looked at: some hundredths of a second.
constexpr qint64 searchBudget = 2'000'000;

qint64 floorDivide(qint64 number, qint64 divisor)
{
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

qint64 ceilDivide(qint64 number, qint64 divisor)
{
    return -floorDivide(-number, divisor);
}

year_month_day dateOf(qint64 day)
{
    return year_month_day(sys_days(days(day)));
}

qint64 dayOf(const year_month_day &date)
{
    return sys_days(date).time_since_epoch().count();
}

/// Monday is 1.
int weekdayOf(qint64 day)
{
    return static_cast<int>(weekday(sys_days(days(day))).iso_encoding());
}

int yearOf(qint64 day)
{
    return static_cast<int>(dateOf(day).year());
}

qint64 firstOfYear(int number)
{
    return dayOf(year(number) / January / 1);
}

/// Months are counted from the year 0.
qint64 monthOf(qint64 day)
{
    const year_month_day date = dateOf(day);
    return static_cast<int>(date.year()) * 12LL + static_cast<unsigned>(date.month()) - 1;
}

qint64 firstOfMonth(qint64 number)
{
    const qint64 yearNumber = floorDivide(number, 12);
    const auto monthNumber = static_cast<unsigned>(number - yearNumber * 12 + 1);
    return dayOf(year(static_cast<int>(yearNumber)) / month(monthNumber) / 1);
}

bool contains(const std::vector<int> &values, qint64 value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

/// Whether a place counted from 1 is wanted, from the beginning or from the end.
bool containsPlace(const std::vector<int> &values, qint64 place, qint64 length)
{
    return contains(values, place) || contains(values, place - length - 1);
}

/// The length of one step of a rule that goes by the clock.
qint64 unit(Frequency frequency)
{
    static constexpr std::array<qint64, 3> units{1, 60, 3600};
    return units.at(static_cast<size_t>(frequency));
}

} // namespace

Recurrence::Recurrence(const RecurrenceRule &rule, qint64 start, bool isDate)
    : m_rule(rule)
    , m_start(start)
{
    const bool isPlain = !hasParts();
    if (isDate && rule.frequency < Frequency::daily) {
        // Days have no hours.
        m_rule.count = 1;
        m_rule.frequency = Frequency::daily;
    } else if (isPlain && rule.frequency < Frequency::daily && rule.count > 0) {
        // The last one needs no counting.
        const qint64 last = start + (rule.count - 1LL) * rule.interval * unit(rule.frequency);
        m_rule.until = std::min(last, rule.until.value_or(last));
        m_rule.count = 0;
    }
    fillInDays();
    fillInTimes(isDate);
}

bool Recurrence::hasParts() const
{
    return !(m_rule.seconds.empty() && m_rule.minutes.empty() && m_rule.hours.empty() &&
             m_rule.days.empty() && m_rule.monthDays.empty() && m_rule.yearDays.empty() &&
             m_rule.weeks.empty() && m_rule.months.empty() && m_rule.positions.empty());
}

/// What the rule leaves open is taken from the start.
void Recurrence::fillInDays()
{
    const qint64 startDay = floorDivide(m_start, secondsOfDay);
    const year_month_day date = dateOf(startDay);
    const bool isYearly = m_rule.frequency == Frequency::yearly;
    if (m_rule.days.empty() && m_rule.monthDays.empty() && m_rule.yearDays.empty()) {
        const bool namesWeeks = !m_rule.weeks.empty();
        if (m_rule.frequency == Frequency::weekly || (isYearly && namesWeeks)) {
            m_rule.days.push_back({weekdayOf(startDay), 0});
        } else if (m_rule.frequency == Frequency::monthly || isYearly) {
            m_rule.monthDays.push_back(static_cast<int>(static_cast<unsigned>(date.day())));
            if (isYearly && m_rule.months.empty())
                m_rule.months.push_back(static_cast<int>(static_cast<unsigned>(date.month())));
        }
    }
    m_countsInYear = isYearly && m_rule.months.empty();
    if (m_rule.frequency < Frequency::monthly) {
        for (RecurrenceRule::Day &day : m_rule.days)
            day.position = 0;
    }
}

void Recurrence::fillInTimes(bool isDate)
{
    const qint64 time = m_start - floorDivide(m_start, secondsOfDay) * secondsOfDay;
    // Of what is longer than the rule's steps, one value; a day that has no hours begins with the first one.
    const auto filled = [&](const std::vector<int> &named, Frequency steps, qint64 value) {
        if (isDate)
            return std::vector<int>{0};
        if (m_rule.frequency <= steps)
            return std::vector<int>{0};
        return named.empty() ? std::vector<int>{static_cast<int>(value)} : named;
    };
    for (const int hour : filled(m_rule.hours, Frequency::hourly, time / 3600)) {
        for (const int minute : filled(m_rule.minutes, Frequency::minutely, time / 60 % 60)) {
            for (const int second : filled(m_rule.seconds, Frequency::secondly, time % 60))
                m_times.push_back(hour * 3600LL + minute * 60LL + second);
        }
    }
}

bool Recurrence::visit(qint64 from, qint64 until, const std::function<bool(qint64)> &visitor) const
{
    Search search{from, until, visitor, searchBudget};
    if (m_rule.frequency < Frequency::daily)
        visitTimes(search);
    else
        visitDays(search);
    return search.budget > 0;
}

/// Passes the starts of one period on, which are in order.
void Recurrence::offer(std::vector<qint64> &starts, Search &search) const
{
    if (!m_rule.positions.empty()) {
        std::vector<qint64> chosen;
        const auto count = static_cast<qint64>(starts.size());
        for (qint64 place = 1; place <= count; ++place) {
            if (containsPlace(m_rule.positions, place, count))
                chosen.push_back(starts.at(static_cast<size_t>(place - 1)));
        }
        starts = std::move(chosen);
    }
    for (const qint64 start : starts) {
        // A day that was moved may meet another one.
        if (start < m_start || (search.last && start <= *search.last))
            continue;
        --search.budget;
        search.last = start;
        const bool isOver = start >= search.until || (m_rule.until && start > *m_rule.until);
        search.isDone = isOver || (m_rule.count > 0 && ++search.counted > m_rule.count) ||
                        (start >= search.from && !search.visitor(start));
        if (search.isDone)
            return;
    }
}

void Recurrence::visitDays(Search &search) const
{
    const qint64 startDay = floorDivide(m_start, secondsOfDay);
    const auto periodOf = [this, startDay](qint64 day) -> qint64 {
        switch (m_rule.frequency) {
        case Frequency::yearly:
            return yearOf(day);
        case Frequency::monthly:
            return monthOf(day);
        case Frequency::weekly:
            // From the beginning of the start's week.
            return floorDivide(day - startDay + (weekdayOf(startDay) - m_rule.weekStart + 7) % 7, 7);
        default:
            return day;
        }
    };
    const qint64 first = periodOf(startDay);
    qint64 step = 0;
    // A rule that counts has to be counted from its start; a day may be moved into the next period.
    if (m_rule.count == 0 && search.from > m_start) {
        const qint64 near = periodOf(floorDivide(search.from, secondsOfDay)) - 1 - first;
        step = std::max<qint64>(0, floorDivide(near, m_rule.interval));
    }
    const qint64 last = periodOf(floorDivide(search.until, secondsOfDay));
    for (; !search.isDone && search.budget > 0; ++step) {
        const qint64 period = first + step * m_rule.interval;
        if (period > last)
            return;
        std::vector<qint64> starts;
        for (const qint64 day : daysOfPeriod(period, search)) {
            for (const qint64 time : m_times)
                starts.push_back(day * secondsOfDay + time);
        }
        --search.budget;
        offer(starts, search);
    }
}

std::vector<qint64> Recurrence::daysOfPeriod(qint64 period, Search &search) const
{
    const qint64 startDay = floorDivide(m_start, secondsOfDay);
    qint64 begin = period;
    qint64 end = period + 1;
    int months = 0;
    if (m_rule.frequency == Frequency::yearly) {
        begin = firstOfYear(static_cast<int>(period));
        end = firstOfYear(static_cast<int>(period) + 1);
        months = 12;
    } else if (m_rule.frequency == Frequency::monthly) {
        begin = firstOfMonth(period);
        end = firstOfMonth(period + 1);
        months = 1;
    } else if (m_rule.frequency == Frequency::weekly) {
        begin = startDay - (weekdayOf(startDay) - m_rule.weekStart + 7) % 7 + 7 * period;
        end = begin + 7;
    }
    search.budget -= end - begin;
    if (months > 0 && m_rule.skip != RecurrenceRule::Skip::omit && !m_rule.monthDays.empty())
        return movedDays(monthOf(begin), months);
    std::vector<qint64> found;
    for (qint64 day = begin; day < end; ++day) {
        if (isDay(day))
            found.push_back(day);
    }
    return found;
}

/// The days of some months, with those that a month lacks moved to the nearest (RFC 7529, section 4.1).
std::vector<qint64> Recurrence::movedDays(qint64 firstMonth, int months) const
{
    std::vector<qint64> found;
    for (qint64 number = firstMonth; number < firstMonth + months; ++number) {
        if (!m_rule.months.empty() && !contains(m_rule.months, number - floorDivide(number, 12) * 12 + 1))
            continue;
        const qint64 begin = firstOfMonth(number);
        const qint64 next = firstOfMonth(number + 1);
        for (const int monthDay : m_rule.monthDays) {
            qint64 day = monthDay > 0 ? begin + monthDay - 1 : next + monthDay;
            const bool isForward = m_rule.skip == RecurrenceRule::Skip::forward;
            if (day >= next)
                day = isForward ? next : next - 1;
            else if (day < begin)
                day = isForward ? begin : begin - 1;
            if (isWeekday(day))
                found.push_back(day);
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

bool Recurrence::isDay(qint64 day) const
{
    const year_month_day date = dateOf(day);
    if (!m_rule.months.empty() && !contains(m_rule.months, static_cast<unsigned>(date.month())))
        return false;
    if (!m_rule.monthDays.empty()) {
        const auto length = static_cast<unsigned>((date.year() / date.month() / std::chrono::last).day());
        if (!containsPlace(m_rule.monthDays, static_cast<unsigned>(date.day()), length))
            return false;
    }
    if (!m_rule.yearDays.empty()) {
        const qint64 place = day - firstOfYear(static_cast<int>(date.year())) + 1;
        if (!containsPlace(m_rule.yearDays, place, date.year().is_leap() ? 366 : 365))
            return false;
    }
    return isWeek(day) && isWeekday(day);
}

bool Recurrence::isWeekday(qint64 day) const
{
    if (m_rule.days.empty())
        return true;
    const int weekday = weekdayOf(day);
    return std::any_of(m_rule.days.begin(), m_rule.days.end(), [&](const RecurrenceRule::Day &wanted) {
        if (wanted.weekday != weekday || wanted.position == 0)
            return wanted.weekday == weekday;
        const int yearNumber = yearOf(day);
        const qint64 begin = m_countsInYear ? firstOfYear(yearNumber) : firstOfMonth(monthOf(day));
        const qint64 end = m_countsInYear ? firstOfYear(yearNumber + 1) : firstOfMonth(monthOf(day) + 1);
        return wanted.position > 0 ? (day - begin) / 7 + 1 == wanted.position
                                   : (end - 1 - day) / 7 + 1 == -wanted.position;
    });
}

bool Recurrence::isWeek(qint64 day) const
{
    if (m_rule.weeks.empty())
        return true;
    // A week belongs to the year that has most of it, so that of its fourth day.
    const auto fourthDay = [this](qint64 any) {
        return any - (weekdayOf(any) - m_rule.weekStart + 7) % 7 + 3;
    };
    const auto numberOf = [](qint64 fourth) { return (fourth - firstOfYear(yearOf(fourth))) / 7 + 1; };
    const qint64 fourth = fourthDay(day);
    const qint64 lastWeek = numberOf(fourthDay(dayOf(year(yearOf(fourth)) / December / 28)));
    return containsPlace(m_rule.weeks, numberOf(fourth), lastWeek);
}

void Recurrence::visitTimes(Search &search) const
{
    const qint64 unitLength = unit(m_rule.frequency);
    const qint64 step = unitLength * m_rule.interval;
    const qint64 base = floorDivide(m_start, unitLength) * unitLength;
    qint64 number = 0;
    if (m_rule.count == 0 && search.from > base)
        number = floorDivide(search.from - base, step);
    while (!search.isDone && search.budget > 0) {
        const qint64 time = base + number * step;
        if (time >= search.until)
            return;
        --search.budget;
        const qint64 next = nextTime(time);
        if (next == time) {
            std::vector<qint64> starts;
            for (const qint64 within : m_times)
                starts.push_back(time + within);
            offer(starts, search);
            ++number;
        } else {
            number = std::max(number + 1, ceilDivide(next - base, step));
        }
    }
}

/// The time itself, if the rule allows its day, hour, minute and second, or the next one that may be allowed.
qint64 Recurrence::nextTime(qint64 time) const
{
    const qint64 day = floorDivide(time, secondsOfDay);
    if (!isDay(day))
        return (day + 1) * secondsOfDay;
    const qint64 within = time - day * secondsOfDay;
    if (!m_rule.hours.empty() && !contains(m_rule.hours, within / 3600))
        return time - within % 3600 + 3600;
    if (m_rule.frequency < Frequency::hourly && !m_rule.minutes.empty() &&
        !contains(m_rule.minutes, within / 60 % 60))
        return time - within % 60 + 60;
    if (m_rule.frequency == Frequency::secondly && !m_rule.seconds.empty() &&
        !contains(m_rule.seconds, within % 60))
        return time + 1;
    return time;
}

} // namespace randblatt
