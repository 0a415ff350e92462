#include "platform/calendar/CalendarIndex.h"

#include "platform/calendar/CalendarColor.h"
#include "platform/calendar/ReadDetails.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

// The difference between a wall clock anywhere and UTC is less.
constexpr qint64 wallClockSlack = 86400;

// When an event takes place, what it is called, and which version of it this is.
constexpr std::array<QByteArrayView, 11> telling{"UID",      "SUMMARY",  "DTSTART",      "DTEND",
                                                 "DURATION", "RRULE",    "RDATE",        "EXDATE",
                                                 "STATUS",   "SEQUENCE", "RECURRENCE-ID"};

/// Other programs' names for what has had a name only since RFC 7986.
constexpr auto formerName = "X-WR-CALNAME";
constexpr auto formerColor = "X-APPLE-CALENDAR-COLOR";

QString formerText(icalcomponent *calendar, QByteArrayView name)
{
    for (icalproperty *property = icalcomponent_get_first_property(calendar, ICAL_X_PROPERTY);
         property != nullptr; property = icalcomponent_get_next_property(calendar, ICAL_X_PROPERTY)) {
        if (QByteArrayView(icalproperty_get_x_name(property)).compare(name, Qt::CaseInsensitive) == 0)
            return decodedText(icalproperty_get_x(property));
    }
    return {};
}

/// A name for one occurrence among those of its event.
QString occurrenceId(const QString &uid, qint64 name)
{
    return uid + u'/' + QString::number(name);
}

bool isForFollowing(icalproperty *recurrenceId)
{
    icalparameter *range = icalproperty_get_first_parameter(recurrenceId, ICAL_RANGE_PARAMETER);
    return range != nullptr && icalparameter_get_range(range) == ICAL_RANGE_THISANDFUTURE;
}

} // namespace

std::optional<CalendarIndex> CalendarIndex::parse(const QByteArray &text)
{
    const auto outline = IcalOutline::of(text);
    if (!outline)
        return std::nullopt;
    icalerror_set_errors_are_fatal(0);
    CalendarIndex index;
    for (const IcalOutline::Calendar &calendar : outline->calendars())
        index.read(text, calendar);
    index.applyOverrides();
    return index;
}

bool CalendarIndex::isCalendar(const QByteArray &text)
{
    return IcalOutline::of(text).has_value();
}

void CalendarIndex::read(QByteArrayView text, const IcalOutline::Calendar &calendar)
{
    const auto part = [text](const IcalOutline::Range &range) {
        return text.sliced(range.begin, range.length);
    };
    readDescription(part(calendar.whole));
    IcalZones &zones = *m_zones.emplace_back(std::make_unique<IcalZones>());
    for (const IcalOutline::Range &place : calendar.zones) {
        const IcalComponent zone(icalparser_parse_string(part(place).toByteArray().constData()));
        if (zone && icalcomponent_isa(zone.get()) == ICAL_VTIMEZONE_COMPONENT)
            zones.add(zone.get());
    }
    for (const IcalOutline::Range &place : calendar.events)
        readEvent(part(place), place, zones);
}

void CalendarIndex::readDescription(QByteArrayView part)
{
    const QByteArray properties = IcalOutline::properties(part);
    const IcalComponent calendar(icalparser_parse_string(properties.constData()));
    if (!calendar)
        return;
    const auto text = [&calendar](icalproperty_kind kind, const char *former) {
        const QString present = textOf(calendar.get(), kind);
        return present.isEmpty() ? formerText(calendar.get(), former) : present;
    };
    if (m_name.isEmpty())
        m_name = text(ICAL_NAME_PROPERTY, formerName);
    if (!m_color.isValid())
        m_color = calendarColor(text(ICAL_COLOR_PROPERTY, formerColor));
}

void CalendarIndex::readEvent(QByteArrayView text, const IcalOutline::Range &place, IcalZones &zones)
{
    const QByteArray properties = IcalOutline::properties(text, telling);
    const IcalComponent component(icalparser_parse_string(properties.constData()));
    icalcomponent *event = component.get();
    if (event == nullptr || icalcomponent_isa(event) != ICAL_VEVENT_COMPONENT)
        return;
    const auto start = zonedTime(icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY), zones);
    QString uid = decodedText(icalcomponent_get_uid(event));
    if (uid.isEmpty())
        uid = u'#' + QString::number(m_entries.size());
    const int sequence = icalcomponent_get_sequence(event);
    const bool isCancelled = icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED;
    const EventLength length = start ? eventLength(event, *start, zones) : EventLength();
    icalproperty *recurrenceId = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
    if (const auto replaces = zonedTime(recurrenceId, zones)) {
        m_overrides.push_back({uid, *replaces, isForFollowing(recurrenceId), sequence, isCancelled, start,
                               length, textOf(event, ICAL_SUMMARY_PROPERTY), place});
        return;
    }
    if (!start || isCancelled)
        return;
    Entry entry{uid, textOf(event, ICAL_SUMMARY_PROPERTY), start->eventTime(), length.end(*start), place};
    if (EventSeries::isRecurring(event)) {
        entry.series = m_series.size();
        m_series.emplace_back(event, *start, zones);
    }
    addEntry(uid, sequence, entry);
}

/// Of two versions of an event, the later one counts; of two events with one name, both.
void CalendarIndex::addEntry(const QString &uid, int sequence, const Entry &entry)
{
    const auto known = m_versions.find(uid);
    const bool isVersion = known != m_versions.end() && known->sequence != sequence;
    if (isVersion && known->sequence > sequence)
        return;
    if (entry.series)
        m_seriesByUid.insert(uid, *entry.series);
    if (isVersion) {
        if (!entry.series)
            m_seriesByUid.remove(uid);
        m_entries.at(known->entry) = entry;
        known->sequence = sequence;
        return;
    }
    m_versions.insert(uid, {m_entries.size(), sequence});
    m_entries.push_back(entry);
}

qint64 CalendarIndex::occurrenceName(const Override &override) const
{
    const auto series = m_seriesByUid.constFind(override.uid);
    return series != m_seriesByUid.cend() ? m_series.at(*series).id(override.replaces)
                                          : override.replaces.eventTime().seconds;
}

void CalendarIndex::applyOverrides()
{
    // The last version of each; one for all that follow stands beside one for the occurrence alone.
    QHash<std::pair<QString, std::pair<qint64, bool>>, size_t> latest;
    for (size_t index = 0; index < m_overrides.size(); ++index) {
        const Override &override = m_overrides.at(index);
        const auto key = std::pair(override.uid, std::pair(occurrenceName(override), override.hasFollowing));
        const auto known = latest.constFind(key);
        if (known == latest.cend() || m_overrides.at(*known).sequence <= override.sequence)
            latest.insert(key, index);
    }
    std::vector<size_t> inOrder(latest.cbegin(), latest.cend());
    std::sort(inOrder.begin(), inOrder.end());
    for (const size_t index : inOrder)
        applyOverride(m_overrides.at(index));
    m_overrides.clear();
    m_overrides.shrink_to_fit();
    m_versions.clear();
}

void CalendarIndex::applyOverride(const Override &override)
{
    const auto series = m_seriesByUid.constFind(override.uid);
    const ZonedTime start = override.start.value_or(override.replaces);
    Entry entry{occurrenceId(override.uid, occurrenceName(override)), override.title, start.eventTime(),
                override.length.end(start), override.place};
    if (series != m_seriesByUid.cend() && override.hasFollowing) {
        // The same clock on both sides, or the difference between two clocks would count.
        const bool isSameClock = start.zone == override.replaces.zone;
        const qint64 shift = isSameClock ? start.wall - override.replaces.wall
                                         : start.eventTime().seconds - override.replaces.eventTime().seconds;
        m_series.at(*series).change(
            {override.replaces, shift, override.length, override.isCancelled, m_changes.size()});
        m_changes.push_back(std::move(entry));
        return;
    }
    if (series != m_seriesByUid.cend())
        m_series.at(*series).exclude(override.replaces);
    if (!override.isCancelled && override.start)
        m_entries.push_back(std::move(entry));
}

std::shared_ptr<const EventDetails> CalendarIndex::details(const Entry &entry, const Excerpt &excerpt)
{
    if (!entry.hasDetails && excerpt) {
        const QByteArray text = excerpt(entry.place);
        entry.hasDetails = !text.isEmpty();
        entry.details = readDetails(text);
    }
    return entry.details;
}

QList<CalendarEvent> CalendarIndex::events(const QDateTime &start, const QDateTime &end,
                                           const QString &prefix, const Excerpt &excerpt) const
{
    const qint64 from = start.toSecsSinceEpoch() - wallClockSlack;
    const qint64 until = end.toSecsSinceEpoch() + wallClockSlack;
    QList<CalendarEvent> found;
    QSet<QString> ids;
    const auto add = [&](const QString &id, const Entry &entry, const EventTime &begin,
                         const EventTime &finish) {
        if (begin.seconds >= until || finish.seconds < from)
            return;
        CalendarEvent event{
            prefix + id, entry.title, begin.toLocal(), finish.toLocal(), begin.kind == EventTime::Kind::date,
            m_color,     m_name};
        event.end = std::max(event.start, event.end);
        const bool overlaps = event.start < end && (event.end > start || event.start >= start);
        if (!overlaps)
            return;
        // Of two events with the same id, as a careless copy makes them, both are shown.
        while (ids.contains(event.id))
            event.id += u'\'';
        ids.insert(event.id);
        event.details = details(entry, excerpt);
        found.append(event);
    };
    for (const Entry &entry : m_entries) {
        if (!entry.series) {
            add(entry.id, entry, entry.start, entry.end);
            continue;
        }
        EventSeries &series = m_series.at(*entry.series);
        for (const EventSeries::Occurrence &occurrence : series.occurrences(from, until))
            add(occurrenceId(entry.id, occurrence.id),
                occurrence.change ? m_changes.at(*occurrence.change) : entry, occurrence.start,
                occurrence.end);
        if (series.takeGivenUp())
            qCWarning(lcCalendar, "Terminregel aufgegeben, nur der erste Termin wird gezeigt: %ls",
                      qUtf16Printable(entry.id));
    }
    return found;
}

} // namespace randblatt
