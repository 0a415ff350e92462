#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <span>
#include <vector>

namespace randblatt {

/// Where the parts of an iCalendar text stand (RFC 5545, section 3.4), by its lines alone: what is in them is
/// for the iCalendar library to read, part by part, since a whole calendar in its form takes much memory.
class IcalOutline
{
public:
    struct Range
    {
        qsizetype begin = 0;
        qsizetype length = 0;
    };

    struct Calendar
    {
        /// The whole of it, and the last line of it.
        Range whole = {};
        Range end = {};
        std::vector<Range> zones = {};
        std::vector<Range> events = {};
    };

    /// Reads a text; none if it is not one or several whole calendars with nothing around them: the library's
    /// parser accepts texts that are cut off.
    [[nodiscard]] static std::optional<IcalOutline> of(QByteArrayView text);

    [[nodiscard]] const std::vector<Calendar> &calendars() const { return m_calendars; }

    /// A part with its own properties of the given names alone, all of them if no names are given, and
    /// without the components in it.
    [[nodiscard]] static QByteArray properties(QByteArrayView part,
                                               std::span<const QByteArrayView> names = {});

private:
    std::vector<Calendar> m_calendars;
};

} // namespace randblatt
