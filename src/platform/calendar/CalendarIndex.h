#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/EventSeries.h"
#include "platform/calendar/IcalOutline.h"

#include <QByteArray>
#include <QHash>

#include <functional>
#include <memory>
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

    /// Gives the part of the text that was read.
    using Excerpt = std::function<QByteArray(const IcalOutline::Range &place)>;

    /// The events that overlap the time from `start` to before `end`, in the text's order, the occurrences of
    /// one event together. An event of no length overlaps its own moment. `prefix` begins all ids.
    /// Their details are read from what `excerpt` gives, once; without it there are none.
    [[nodiscard]] QList<CalendarEvent> events(const QDateTime &start, const QDateTime &end,
                                              const QString &prefix = {}, const Excerpt &excerpt = {}) const;
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
        /// Where its text stands.
        IcalOutline::Range place;
        /// Index in m_series; none for an event that takes place once.
        std::optional<size_t> series = {};
        /// Once they have been asked for.
        mutable bool hasDetails = false;
        mutable std::shared_ptr<const EventDetails> details = {};
    };
    /// An event of its own in the place of an occurrence of another, or of all from there on.
    struct Override
    {
        QString uid;
        ZonedTime replaces;
        bool hasFollowing = false;
        int sequence = 0;
        bool isCancelled = false;
        std::optional<ZonedTime> start;
        EventLength length;
        QString title;
        IcalOutline::Range place;
    };
    /// Where the entry of an event is that may be replaced by a later version of it.
    struct Version
    {
        size_t entry;
        int sequence;
    };

    void read(QByteArrayView text, const IcalOutline::Calendar &calendar);
    void readDescription(QByteArrayView part);
    void readEvent(QByteArrayView text, const IcalOutline::Range &place, IcalZones &zones);
    void addEntry(const QString &uid, int sequence, const Entry &entry);
    void applyOverrides();
    void applyOverride(const Override &override);
    [[nodiscard]] static std::shared_ptr<const EventDetails> details(const Entry &entry,
                                                                     const Excerpt &excerpt);
    [[nodiscard]] qint64 occurrenceName(const Override &override) const;

    QString m_name;
    QColor m_color;
    std::vector<Entry> m_entries;
    mutable std::vector<EventSeries> m_series;
    /// What occurrences have become; the series know them by their index.
    std::vector<Entry> m_changes;
    /// Until everything is read.
    QHash<QString, Version> m_versions;
    QHash<QString, size_t> m_seriesByUid;
    std::vector<Override> m_overrides;
    /// One for each calendar of the text; the series refer to them.
    std::vector<std::unique_ptr<IcalZones>> m_zones;
};

} // namespace randblatt
