#include "platform/calendar/CalendarIndex.h"

#include <QByteArrayView>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// The difference between a wall clock anywhere and UTC is less.
constexpr qint64 wallClockSlack = 86400;

bool hasName(QByteArrayView line, QByteArrayView keyword, QByteArrayView &name)
{
    if (line.size() <= keyword.size() ||
        qstrnicmp(line.data(), keyword.size(), keyword.data(), keyword.size()) != 0)
        return false;
    name = line.sliced(keyword.size()).trimmed();
    return true;
}

/// Whether every component is closed and the outermost ones are calendars. The library's parser accepts
/// texts that are cut off.
bool isWhole(const QByteArray &text)
{
    std::vector<QByteArrayView> open;
    const QByteArrayView view(text);
    bool hasCalendar = false;
    for (qsizetype from = 0; from < view.size();) {
        const qsizetype newline = text.indexOf('\n', from);
        const qsizetype end = newline < 0 ? view.size() : newline;
        const QByteArrayView line = view.sliced(from, end - from);
        from = end + 1;
        QByteArrayView name;
        if (hasName(line, "BEGIN:", name)) {
            const bool isCalendar = name.compare("VCALENDAR", Qt::CaseInsensitive) == 0;
            if (open.empty() != isCalendar)
                return false;
            hasCalendar = true;
            open.push_back(name);
        } else if (hasName(line, "END:", name)) {
            if (open.empty() || open.back().compare(name, Qt::CaseInsensitive) != 0)
                return false;
            open.pop_back();
        } else if (open.empty() && !line.trimmed().isEmpty()) {
            return false;
        }
    }
    return hasCalendar && open.empty();
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
    static constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
    const QByteArray plain = text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text;
    if (!isWhole(plain))
        return std::nullopt;
    icalerror_set_errors_are_fatal(0);
    CalendarIndex index;
    index.m_zones.reset(icalparser_parse_string(plain.constData()));
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

void CalendarIndex::read(icalcomponent *calendar)
{
    readDescription(calendar);
    icalcomponent *next = nullptr;
    for (icalcomponent *event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
         event != nullptr; event = next) {
        next = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT);
        readEvent(event, calendar);
    }
    // Ten thousand parsed events take far more memory than their records.
    while (icalcomponent *event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT)) {
        icalcomponent_remove_component(calendar, event);
        icalcomponent_free(event);
    }
}

void CalendarIndex::readEvent(icalcomponent *event, icalcomponent *calendar)
{
    const auto start = zonedTime(icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY), calendar);
    QString uid = QString::fromUtf8(icalcomponent_get_uid(event));
    if (uid.isEmpty())
        uid = u'#' + QString::number(m_entries.size());
    const auto replaces =
        zonedTime(icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY), calendar);
    if (replaces)
        m_replaced.emplace_back(uid, replaces->eventTime());
    if (!start || isCancelled(event))
        return;
    Entry entry{uid, textOf(event, ICAL_SUMMARY_PROPERTY), start->eventTime(),
                eventLength(event, *start, calendar).end(*start), std::nullopt};
    if (replaces) {
        entry.id = occurrenceId(uid, replaces->eventTime());
    } else if (EventSeries::isRecurring(event)) {
        entry.series = m_series.size();
        m_seriesByUid.insert(uid, m_series.size());
        m_series.emplace_back(event, *start, calendar);
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
