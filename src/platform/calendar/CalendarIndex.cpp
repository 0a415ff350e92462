#include "platform/calendar/CalendarIndex.h"

#include <QByteArrayView>

#include <algorithm>
#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// The difference between a wall clock anywhere and UTC is less.
constexpr qint64 wallClockSlack = 86400;

bool isNamed(QByteArrayView name, QByteArrayView wanted)
{
    return name.size() == wanted.size() &&
           qstrnicmp(name.data(), wanted.data(), static_cast<size_t>(name.size())) == 0;
}

QByteArrayView nameAfter(QByteArrayView line, QByteArrayView keyword)
{
    if (line.size() <= keyword.size() || !isNamed(line.first(keyword.size()), keyword))
        return {};
    return line.sliced(keyword.size()).trimmed();
}

/// Whether a line within an event tells when it takes place, or what it is called.
bool isOfInterest(QByteArrayView line)
{
    static constexpr std::array<QByteArrayView, 10> names{"UID",           "SUMMARY", "DTSTART", "DTEND",
                                                          "DURATION",      "RRULE",   "RDATE",   "EXDATE",
                                                          "RECURRENCE-ID", "STATUS"};
    const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == ':' || c == ';'; });
    const QByteArrayView name(line.begin(), end);
    return std::any_of(names.begin(), names.end(),
                       [name](QByteArrayView known) { return isNamed(name, known); });
}

/// Whether nothing is to be seen of a line. Some programs end their texts with a control character.
bool isBlank(QByteArrayView line)
{
    return std::all_of(line.begin(), line.end(),
                       [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == 0x7f; });
}

/// What the index needs of a text: its calendars with their zones and the telling lines of their events; the
/// bulk of most calendars is something else. None if a component is not closed, or an outermost one is no
/// calendar: the library's parser accepts texts that are cut off.
std::optional<QByteArray> reduced(const QByteArray &text)
{
    QByteArray kept;
    kept.reserve(text.size());
    std::vector<QByteArrayView> open;
    const QByteArrayView view(text);
    bool hasCalendar = false;
    bool keepsLine = false;
    // In a calendar, in an event or in a zone with its parts.
    const auto isKept = [&open] {
        return open.size() <= 1 || isNamed(open.at(1), "VTIMEZONE") ||
               (open.size() == 2 && isNamed(open.at(1), "VEVENT"));
    };
    for (qsizetype from = 0; from < view.size();) {
        const qsizetype newline = text.indexOf('\n', from);
        const qsizetype end = newline < 0 ? view.size() : newline + 1;
        const QByteArrayView line = view.sliced(from, end - from);
        from = end;
        if (const QByteArrayView begun = nameAfter(line, "BEGIN:"); !begun.isEmpty()) {
            if (open.empty() != isNamed(begun, "VCALENDAR"))
                return std::nullopt;
            hasCalendar = true;
            open.push_back(begun);
            keepsLine = isKept();
        } else if (const QByteArrayView ended = nameAfter(line, "END:"); !ended.isEmpty()) {
            if (open.empty() || !isNamed(open.back(), ended))
                return std::nullopt;
            keepsLine = isKept();
            open.pop_back();
        } else if (open.empty()) {
            if (!isBlank(line))
                return std::nullopt;
            keepsLine = false;
        } else if (line.front() != ' ' && line.front() != '\t') {
            keepsLine = isKept() && (!isNamed(open.back(), "VEVENT") || isOfInterest(line));
        }
        if (keepsLine)
            kept.append(line);
    }
    return hasCalendar && open.empty() ? std::optional(kept) : std::nullopt;
}

QByteArray withoutByteOrderMark(const QByteArray &text)
{
    static constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
    return text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text;
}

QString textOf(icalcomponent *component, icalproperty_kind kind)
{
    icalproperty *property = icalcomponent_get_first_property(component, kind);
    icalvalue *value = property != nullptr ? icalproperty_get_value(property) : nullptr;
    return value != nullptr ? QString::fromUtf8(icalvalue_get_text(value)) : QString();
}

/// A name for one occurrence among those of its event.
QString occurrenceId(const QString &uid, const EventTime &start)
{
    return uid + u'/' + QString::number(start.seconds);
}

bool isCancelled(icalcomponent *event)
{
    return icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED;
}

} // namespace

std::optional<CalendarIndex> CalendarIndex::parse(const QByteArray &text)
{
    auto plain = reduced(withoutByteOrderMark(text));
    if (!plain)
        return std::nullopt;
    icalerror_set_errors_are_fatal(0);
    CalendarIndex index;
    // For the library the text would end there.
    plain->replace(QByteArrayView("\0", 1), {});
    index.m_zones.reset(icalparser_parse_string(plain->constData()));
    if (!index.m_zones)
        return std::nullopt;
    if (icalcomponent_isa(index.m_zones.get()) == ICAL_VCALENDAR_COMPONENT) {
        index.read(index.m_zones.get());
    } else {
        for (icalcomponent *calendar =
                 icalcomponent_get_first_component(index.m_zones.get(), ICAL_VCALENDAR_COMPONENT);
             calendar != nullptr;
             calendar = icalcomponent_get_next_component(index.m_zones.get(), ICAL_VCALENDAR_COMPONENT))
            index.read(calendar);
    }
    for (const auto &[uid, start] : index.m_replaced) {
        const auto series = index.m_seriesByUid.constFind(uid);
        if (series != index.m_seriesByUid.cend())
            index.m_series.at(*series).exclude(start);
    }
    return index;
}

bool CalendarIndex::isCalendar(const QByteArray &text)
{
    return reduced(withoutByteOrderMark(text)).has_value();
}

void CalendarIndex::read(icalcomponent *calendar)
{
    readDescription(calendar);
    IcalZones zones(calendar);
    icalcomponent *next = nullptr;
    for (icalcomponent *event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
         event != nullptr; event = next) {
        next = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT);
        readEvent(event, zones);
    }
    // Ten thousand parsed events take far more memory than their records.
    while (icalcomponent *event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT)) {
        icalcomponent_remove_component(calendar, event);
        icalcomponent_free(event);
    }
}

void CalendarIndex::readEvent(icalcomponent *event, IcalZones &zones)
{
    const auto start = zonedTime(icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY), zones);
    QString uid = QString::fromUtf8(icalcomponent_get_uid(event));
    if (uid.isEmpty())
        uid = u'#' + QString::number(m_entries.size());
    const auto replaces =
        zonedTime(icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY), zones);
    if (replaces)
        m_replaced.emplace_back(uid, replaces->eventTime());
    if (!start || isCancelled(event))
        return;
    Entry entry{uid, textOf(event, ICAL_SUMMARY_PROPERTY), start->eventTime(),
                eventLength(event, *start, zones).end(*start), std::nullopt};
    if (replaces) {
        entry.id = occurrenceId(uid, replaces->eventTime());
    } else if (EventSeries::isRecurring(event)) {
        entry.series = m_series.size();
        m_seriesByUid.insert(uid, m_series.size());
        m_series.emplace_back(event, *start, zones);
    }
    m_entries.push_back(std::move(entry));
}

void CalendarIndex::readDescription(icalcomponent *calendar)
{
    if (m_name.isEmpty())
        m_name = textOf(calendar, ICAL_NAME_PROPERTY);
    if (!m_color.isValid())
        m_color = QColor(textOf(calendar, ICAL_COLOR_PROPERTY));
}

QList<CalendarEvent> CalendarIndex::events(const QDateTime &start, const QDateTime &end,
                                           const QString &prefix) const
{
    const qint64 from = start.toSecsSinceEpoch() - wallClockSlack;
    const qint64 until = end.toSecsSinceEpoch() + wallClockSlack;
    QList<CalendarEvent> found;
    QSet<QString> ids;
    const auto add = [&](const QString &id, const QString &title, const EventTime &begin,
                         const EventTime &finish) {
        if (begin.seconds >= until || finish.seconds < from)
            return;
        CalendarEvent event{
            prefix + id, title, begin.toLocal(), finish.toLocal(), begin.kind == EventTime::Kind::date,
            m_color,     m_name};
        event.end = std::max(event.start, event.end);
        const bool overlaps = event.start < end && (event.end > start || event.start >= start);
        if (!overlaps)
            return;
        // Of two events with the same id, as a careless copy makes them, both are shown.
        while (ids.contains(event.id))
            event.id += u'\'';
        ids.insert(event.id);
        found.append(event);
    };
    for (const Entry &entry : m_entries) {
        if (!entry.series) {
            add(entry.id, entry.title, entry.start, entry.end);
            continue;
        }
        const auto occurrences = m_series.at(*entry.series).occurrences(from, until);
        for (const EventSeries::Occurrence &occurrence : occurrences)
            add(occurrenceId(entry.id, occurrence.start), entry.title, occurrence.start, occurrence.end);
    }
    return found;
}

} // namespace randblatt
