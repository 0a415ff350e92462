#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/EventSeries.h"

#include <QByteArray>
#include <QHash>

#include <optional>
#include <vector>

namespace randblatt {

/// The events of an iCalendar text (RFC 5545), ready to be asked for a range: what does not recur is kept as
/// plain records, what does as its rules.
class CalendarIndex
{
public:
    /// Reads a text; none if it is not one or several whole calendars. Events that make no sense are left
    /// out.
    [[nodiscard]] static std::optional<CalendarIndex> parse(const QByteArray &text);
    /// Whether parse() would read the text.
    [[nodiscard]] static bool isCalendar(const QByteArray &text);

    /// The events that overlap the time from `start` to before `end`, in the text's order, the occurrences of
    /// one event together. An event of no length overlaps its own moment. `prefix` begins all ids.
    [[nodiscard]] QList<CalendarEvent> events(const QDateTime &start, const QDateTime &end,
                                              const QString &prefix = {}) const;
    /// The calendar's own name and colour (RFC 7986); empty and invalid where it has none.
    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] QColor color() const { return m_color; }

private:
    struct Entry
    {
        QString id;
        QString title;
        EventTime start;
        EventTime end;
        /// Index in m_series; none for an event that takes place once.
        std::optional<size_t> series;
    };

    void read(icalcomponent *calendar);
    void readEvent(icalcomponent *event, IcalZones &zones);
    void readDescription(icalcomponent *calendar);

    QString m_name;
    QColor m_color;
    std::vector<Entry> m_entries;
    std::vector<EventSeries> m_series;
    /// The series by uid, and the occurrences by uid that events of their own replace.
    QHash<QString, size_t> m_seriesByUid;
    std::vector<std::pair<QString, EventTime>> m_replaced;
    /// What is left of the text: the zones that the series refer to.
    IcalComponent m_zones;
};

} // namespace randblatt
