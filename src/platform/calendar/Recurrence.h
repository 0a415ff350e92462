#pragma once

#include "platform/calendar/RecurrenceRule.h"

#include <functional>
#include <vector>

namespace randblatt {

/// The starts that a rule gives, on the wall clock. It looks for them itself, since the iterator of the
/// iCalendar library does not come back from some rules that never match.
class Recurrence
{
public:
    /// `start` is that of the event, in seconds since 1970 on the wall clock, as if it showed UTC.
    Recurrence(const RecurrenceRule &rule, qint64 start, bool isDate);

    /// Calls `visitor` with the starts from `from` to before `until`, in order, for as long as it returns
    /// true. The event's own start is among them only if it follows the rule. False if the search took too
    /// long and was given up.
    [[nodiscard]] bool visit(qint64 from, qint64 until, const std::function<bool(qint64)> &visitor) const;

private:
    /// A visit under way.
    struct Search
    {
        qint64 from;
        qint64 until;
        const std::function<bool(qint64)> &visitor;
        /// What may still be looked at.
        qint64 budget;
        int counted = 0;
        std::optional<qint64> last = {};
        bool isDone = false;
    };

    void fillInDays();
    void fillInTimes(bool isDate);
    void visitDays(Search &search) const;
    void visitTimes(Search &search) const;
    void offer(std::vector<qint64> &starts, Search &search) const;
    [[nodiscard]] qint64 nextTime(qint64 time) const;
    [[nodiscard]] std::vector<qint64> daysOfPeriod(qint64 period, Search &search) const;
    [[nodiscard]] std::vector<qint64> movedDays(qint64 firstMonth, int months) const;
    [[nodiscard]] bool hasParts() const;
    [[nodiscard]] bool isDay(qint64 day) const;
    [[nodiscard]] bool isWeekday(qint64 day) const;
    [[nodiscard]] bool isWeek(qint64 day) const;

    RecurrenceRule m_rule;
    qint64 m_start;
    /// Whether the positions of weekdays are counted in the year, else in the month.
    bool m_countsInYear = false;
    /// The seconds of a day, or of an hour or minute, at which the event starts.
    std::vector<qint64> m_times;
};

} // namespace randblatt
