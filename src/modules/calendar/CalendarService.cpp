#include "modules/calendar/CalendarService.h"

#include "modules/calendar/CalendarFormat.h"

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 shortestEvent = 300; // seconds

} // namespace

CalendarService::CalendarService(CalendarStore &store, QObject *parent)
    : CalendarService(
          store, [] { return QDateTime::currentDateTime(); }, parent)
{
}

CalendarService::CalendarService(CalendarStore &store, Clock clock, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_clock(std::move(clock))
    , m_statusMessage(u"Lade…"_s)
{
}

void CalendarService::requestAccess()
{
    Q_EMIT accessRequested();
    countLoading(1);
    m_store.requestAccess(this, [this](const CalendarStore::Access &access) {
        setAuthorized(static_cast<bool>(access));
        if (access) {
            reload();
        } else {
            setStatusMessage(u"Kein Kalenderzugriff. In den Systemeinstellungen erlauben."_s,
                             access.reason());
            Q_EMIT reloaded(false);
        }
        countLoading(-1);
    });
}

void CalendarService::reload()
{
    const QDate today = m_clock().date();
    const QDateTime start = today.startOfDay();
    const QDateTime end = today.addDays(m_daysAhead).startOfDay();
    if (!start.isValid() || !end.isValid())
        return;
    countLoading(1);
    m_store.fetchEvents(start, end, this, [this, reload = ++m_reload](const CalendarStore::Events &events) {
        if (reload == m_reload)
            finishReload(events);
        countLoading(-1);
    });
}

void CalendarService::finishReload(const CalendarStore::Events &events)
{
    m_isOutdated = !events;
    if (events)
        publish(*events);
    else
        setStatusMessage(m_events.isEmpty() ? u"Konnte Termine nicht laden."_s
                                            : u"Konnte Termine nicht laden; hier steht der letzte Stand."_s,
                         events.reason());
    if (events)
        fetchCalendars();
    Q_EMIT reloaded(static_cast<bool>(events));
}

void CalendarService::fetchCalendars()
{
    m_store.fetchCalendars(this, [this](const CalendarStore::Calendars &calendars) {
        if (!calendars || *calendars == m_calendars)
            return;
        m_calendars = *calendars;
        Q_EMIT calendarsChanged();
    });
}

QVariantList CalendarService::calendarEntries() const
{
    QVariantList entries;
    for (const WritableCalendar &calendar : m_calendars)
        entries.append(QVariantMap{{u"id"_s, calendar.id},
                                   {u"name"_s, calendar.name},
                                   {u"color"_s, CalendarFormat::barColor(calendar.color)}});
    return entries;
}

void CalendarService::addEvent(const QString &title, const QDateTime &start, const QDateTime &end,
                               const QString &uid)
{
    addEvent({title, start, end, uid});
}

void CalendarService::addEvent(const NewCalendarEvent &event)
{
    if (m_saving)
        return;
    NewCalendarEvent trimmed = event;
    trimmed.title = event.title.trimmed();
    if (trimmed.title.isEmpty() || !m_authorized) {
        Q_EMIT addFinished(false);
        return;
    }
    trimmed.end = std::max(event.end, event.start.addSecs(shortestEvent));
    setSaving(true);
    m_store.saveEvent(trimmed, this, [this](const CalendarStore::Saved &saved) { finishAdd(saved); });
}

QString CalendarService::newUid()
{
    return NewCalendarEvent().uid;
}

void CalendarService::finishAdd(const CalendarStore::Saved &saved)
{
    if (saved)
        reload();
    else
        setStatusMessage(u"Konnte Termin nicht speichern."_s, saved.reason());
    setSaving(false);
    Q_EMIT addFinished(static_cast<bool>(saved));
    if (saved)
        Q_EMIT eventAdded(*saved);
    else
        Q_EMIT addFailed(m_reason.isEmpty() ? m_statusMessage : m_reason);
}

void CalendarService::removeEvent(const SavedEvent &event)
{
    m_store.removeEvent(
        event, this, [this, event](const CalendarStore::Removed &removed) { finishRemoval(event, removed); });
}

void CalendarService::finishRemoval(const SavedEvent &event, const CalendarStore::Removed &removed)
{
    const QString failure = u"Konnte Termin nicht löschen."_s;
    if (!removed) {
        setStatusMessage(failure, removed.reason());
        Q_EMIT removalFailed(event);
    } else if (*removed == Removal::changed) {
        setStatusMessage(failure, u"Der Termin wurde inzwischen geändert."_s);
    } else {
        reload();
    }
}

void CalendarService::publish(const QList<CalendarEvent> &events)
{
    QList<CalendarEvent> sorted = events;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const CalendarEvent &a, const CalendarEvent &b) { return a.start < b.start; });
    if (sorted != m_events) {
        m_events = std::move(sorted);
        Q_EMIT eventsChanged();
    }
    setStatusMessage(m_events.isEmpty()
                         ? u"Keine Termine in den nächsten "_s + QString::number(m_daysAhead) + u" Tagen"_s
                         : QString());
}

void CalendarService::setAuthorized(bool authorized)
{
    if (m_authorized == authorized)
        return;
    m_authorized = authorized;
    Q_EMIT authorizedChanged();
}

void CalendarService::setStatusMessage(const QString &message, const QString &reason)
{
    if (m_statusMessage == message && m_reason == reason)
        return;
    m_statusMessage = message;
    m_reason = reason;
    Q_EMIT statusMessageChanged();
}

void CalendarService::countLoading(int step)
{
    const bool before = loading();
    m_loading += step;
    if (loading() != before)
        Q_EMIT loadingChanged();
}

void CalendarService::setSaving(bool saving)
{
    if (m_saving == saving)
        return;
    m_saving = saving;
    Q_EMIT savingChanged();
}

} // namespace randblatt
