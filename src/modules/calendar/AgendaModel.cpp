#include "modules/calendar/AgendaModel.h"

#include "modules/calendar/CalendarFormat.h"
#include "modules/calendar/CalendarService.h"

#include <QSet>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// What makes a row the same row. An event that moves to another day is another one: views group rows when
/// they come.
QString key(const CalendarEvent &event)
{
    return QString::number(event.start.date().toJulianDay()) + u'/' + event.id;
}

QString titleOf(const CalendarEvent &event)
{
    return event.title.isEmpty() ? u"(ohne Titel)"_s : event.title;
}

QSet<QString> keys(const QList<CalendarEvent> &events)
{
    QSet<QString> keys;
    keys.reserve(events.size());
    for (const CalendarEvent &event : events)
        keys.insert(key(event));
    return keys;
}

} // namespace

AgendaModel::AgendaModel(const CalendarService &service, QObject *parent)
    : QAbstractListModel(parent)
    , m_service(service)
    , m_events(service.events())
{
    connect(&service, &CalendarService::eventsChanged, this, &AgendaModel::follow);
}

int AgendaModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant AgendaModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const CalendarEvent &event = m_events.at(index.row());
    switch (static_cast<Role>(role)) {
    case Role::title:
        return titleOf(event);
    case Role::timeLine:
        return CalendarFormat::timeLine(event);
    case Role::color:
        return CalendarFormat::barColor(event.calendarColor);
    case Role::calendarName:
        return event.calendarName;
    case Role::day:
        return event.start.date().toString(Qt::ISODate);
    case Role::eventId:
        return key(event);
    }
    return {};
}

QHash<int, QByteArray> AgendaModel::roleNames() const
{
    return {
        {static_cast<int>(Role::title), "title"}, {static_cast<int>(Role::timeLine), "timeLine"},
        {static_cast<int>(Role::color), "color"}, {static_cast<int>(Role::calendarName), "calendarName"},
        {static_cast<int>(Role::day), "day"},     {static_cast<int>(Role::eventId), "eventId"},
    };
}

QVariantMap AgendaModel::details(const QString &eventId) const
{
    const auto event = std::find_if(m_events.cbegin(), m_events.cend(),
                                    [&eventId](const CalendarEvent &other) { return key(other) == eventId; });
    if (event == m_events.cend())
        return {};
    const EventDetails known = event->details ? *event->details : EventDetails();
    QStringList links;
    for (const QUrl &link : known.links)
        links.append(link.toString(QUrl::FullyEncoded));
    return {{u"title"_s, titleOf(*event)},
            {u"when"_s, CalendarFormat::when(*event)},
            {u"color"_s, CalendarFormat::barColor(event->calendarColor)},
            {u"calendarName"_s, event->calendarName},
            {u"place"_s, known.place},
            {u"description"_s, known.description},
            {u"attendees"_s, known.attendees},
            {u"links"_s, links},
            {u"meetings"_s, known.meetings}};
}

void AgendaModel::follow()
{
    const int before = count();
    removeVanished(m_service.events());
    place(m_service.events());
    if (count() != before)
        Q_EMIT countChanged();
    Q_EMIT followed();
}

void AgendaModel::removeVanished(const QList<CalendarEvent> &events)
{
    const QSet<QString> kept = keys(events);
    const auto isKept = [&](int row) { return kept.contains(key(m_events.at(row))); };
    for (int last = count() - 1; last >= 0; --last) {
        if (isKept(last))
            continue;
        int first = last;
        while (first > 0 && !isKept(first - 1))
            --first;
        beginRemoveRows({}, first, last);
        m_events.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
}

void AgendaModel::place(const QList<CalendarEvent> &events)
{
    const QSet<QString> present = keys(m_events);
    for (int row = 0; row < events.size(); ++row) {
        int end = row;
        while (end < events.size() && !present.contains(key(events.at(end))))
            ++end;
        if (end > row) {
            insert(events, row, end);
            row = end - 1;
            continue;
        }
        const int from = rowOf(events.at(row), row);
        if (from == count()) {
            insert(events, row, row + 1);
            continue;
        }
        if (from != row) {
            beginMoveRows({}, from, from, {}, row);
            m_events.move(from, row);
            endMoveRows();
        }
        if (m_events.at(row) != events.at(row)) {
            m_events[row] = events.at(row);
            Q_EMIT dataChanged(index(row), index(row));
        }
    }
    // Only rows that bear the same name as another one are left.
    if (count() > events.size()) {
        beginRemoveRows({}, static_cast<int>(events.size()), count() - 1);
        m_events.resize(events.size());
        endRemoveRows();
    }
}

void AgendaModel::insert(const QList<CalendarEvent> &events, int begin, int end)
{
    beginInsertRows({}, begin, end - 1);
    for (int row = begin; row < end; ++row)
        m_events.insert(row, events.at(row));
    endInsertRows();
}

int AgendaModel::rowOf(const CalendarEvent &event, int from) const
{
    const auto it =
        std::find_if(m_events.cbegin() + from, m_events.cend(),
                     [wanted = key(event)](const CalendarEvent &other) { return key(other) == wanted; });
    return static_cast<int>(it - m_events.cbegin());
}

} // namespace randblatt
