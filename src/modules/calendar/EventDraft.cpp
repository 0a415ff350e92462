#include "modules/calendar/EventDraft.h"

#include "modules/calendar/DateTimeText.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto openKey = "open"_L1;
constexpr auto titleKey = "title"_L1;
constexpr auto startKey = "start"_L1;
constexpr auto startTextKey = "startText"_L1;
constexpr auto durationKey = "durationMinutes"_L1;
constexpr auto uidKey = "uid"_L1;
constexpr auto allDayKey = "allDay"_L1;
constexpr auto calendarKey = "calendar"_L1;

/// Buttons take no focus, so an input method may still be holding the last word.
void endComposition()
{
    QGuiApplication::inputMethod()->commit();
}

} // namespace

EventDraft::EventDraft(CalendarService &service, Preferences &preferences, CalendarService::Clock clock,
                       QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_clock(std::move(clock))
    , m_stored(preferences, u"calendar.event"_s)
{
    connect(&service, &CalendarService::addFinished, this, &EventDraft::finish);
    connect(&service, &CalendarService::addFailed, this, &EventDraft::setProblem);
    connect(&service, &CalendarService::calendarsChanged, this, &EventDraft::calendarChanged);
    restore();
    beginView();
}

void EventDraft::beginView()
{
    // Nobody changes what somebody has in front of him, or has begun.
    if (m_start.isValid() && (m_isOpen || !m_title.isEmpty() || isStartPending()))
        return;
    setStart(m_clock());
}

void EventDraft::restore()
{
    if (m_stored.isEmpty())
        return;
    const QJsonObject values = m_stored.values();
    m_isOpen = values.value(openKey).toBool();
    m_title = values.value(titleKey).toString();
    m_uid = values.value(uidKey).toString();
    m_isAllDay = values.value(allDayKey).toBool();
    m_calendar = values.value(calendarKey).toString();
    m_durationMinutes = std::max(1, values.value(durationKey).toInt(m_durationMinutes));
    const auto start = QDateTime::fromString(values.value(startKey).toString(), Qt::ISODateWithMs);
    if (!DateTimeText::isWritable(start))
        return;
    m_start = start;
    m_startText = values.value(startTextKey).toString(writtenStart());
    m_startProblem = DateTimeText::read(m_startText, start, m_clock()).problem;
}

void EventDraft::store()
{
    if (!m_isOpen && m_title.isEmpty() && !isStartPending()) {
        m_stored.clear();
        return;
    }
    QJsonObject values{{openKey, m_isOpen},
                       {titleKey, m_title},
                       {startKey, m_start.toString(Qt::ISODateWithMs)},
                       {durationKey, m_durationMinutes}};
    if (isStartPending())
        values.insert(startTextKey, m_startText);
    if (m_isAllDay)
        values.insert(allDayKey, true);
    if (!m_calendar.isEmpty())
        values.insert(calendarKey, m_calendar);
    if (!m_uid.isEmpty())
        values.insert(uidKey, m_uid);
    m_stored.setValues(values);
}

/// The start as the field writes it.
QString EventDraft::writtenStart() const
{
    return m_isAllDay ? DateTimeText::dateText(m_start) : DateTimeText::text(m_start);
}

bool EventDraft::isStartPending() const
{
    return m_startText != writtenStart();
}

bool EventDraft::commitStart()
{
    endComposition();
    if (!isStartPending()) {
        setStartProblem({});
        return true;
    }
    const TypedTime typed = DateTimeText::read(m_startText, m_start, m_clock());
    setStartProblem(typed.problem);
    if (!typed.problem.isEmpty())
        return false;
    if (typed.time != m_start)
        setStart(typed.time);
    else
        showStartText(writtenStart());
    return true;
}

void EventDraft::stepStart(int cursor, int steps)
{
    if (commitStart())
        setStart(DateTimeText::stepped(m_start, cursor, steps));
}

void EventDraft::chooseDay(int year, int month, int day)
{
    setStart(DateTimeText::onDay(m_start, year, month, day));
}

void EventDraft::add()
{
    if (m_service.saving() || !commitStart())
        return;
    setProblem({});
    if (m_uid.isEmpty())
        m_uid = CalendarService::newUid();
    // Who tries again means the same calendar.
    m_calendar = calendar();
    store();
    m_submittedTitle = m_title;
    NewCalendarEvent event{m_title, m_start,    m_start.addSecs(m_durationMinutes * 60LL),
                           m_uid,   m_isAllDay, m_calendar};
    if (m_isAllDay) {
        event.start = m_start.date().startOfDay();
        event.end = m_start.date().addDays(1).startOfDay();
    }
    m_service.addEvent(event);
}

void EventDraft::finish(bool saved)
{
    if (!saved || m_title != m_submittedTitle)
        return;
    setTitle({});
    setAllDay(false);
    setCalendar({});
    setOpen(false);
}

void EventDraft::setOpen(bool open)
{
    if (m_isOpen == open)
        return;
    m_isOpen = open;
    setProblem({});
    store();
    Q_EMIT openChanged();
}

void EventDraft::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    changeEvent();
    Q_EMIT titleChanged();
}

void EventDraft::setStart(const QDateTime &start)
{
    if (!DateTimeText::isWritable(start))
        return;
    setStartProblem({});
    if (m_start == start) {
        showStartText(writtenStart());
        return;
    }
    m_start = start;
    m_startText = writtenStart();
    changeEvent();
    Q_EMIT startChanged();
    Q_EMIT startTextChanged();
}

void EventDraft::setStartText(const QString &text)
{
    showStartText(text);
    // Once it is marked, the person sees with every letter whether it is better.
    if (!m_startProblem.isEmpty())
        setStartProblem(DateTimeText::read(text, m_start, m_clock()).problem);
}

void EventDraft::setDurationMinutes(int minutes)
{
    if (m_durationMinutes == minutes)
        return;
    m_durationMinutes = minutes;
    changeEvent();
    Q_EMIT durationMinutesChanged();
}

void EventDraft::setAllDay(bool allDay)
{
    if (m_isAllDay == allDay)
        return;
    const bool isTyped = isStartPending();
    m_isAllDay = allDay;
    changeEvent();
    Q_EMIT allDayChanged();
    if (!isTyped)
        showStartText(writtenStart());
}

QString EventDraft::calendar() const
{
    const QList<WritableCalendar> &calendars = m_service.calendars();
    const bool isThere =
        std::any_of(calendars.begin(), calendars.end(),
                    [this](const WritableCalendar &known) { return known.id == m_calendar; });
    // Before it is known which there are, none has gone.
    if (isThere || calendars.isEmpty())
        return m_calendar;
    return calendars.first().id;
}

void EventDraft::setCalendar(const QString &id)
{
    if (m_calendar == id)
        return;
    m_calendar = id;
    changeEvent();
    Q_EMIT calendarChanged();
}

void EventDraft::showStartText(const QString &text)
{
    if (m_startText == text)
        return;
    m_startText = text;
    store();
    Q_EMIT startTextChanged();
}

void EventDraft::changeEvent()
{
    m_uid.clear();
    setProblem({});
    store();
}

void EventDraft::setProblem(const QString &problem)
{
    if (m_problem == problem)
        return;
    m_problem = problem;
    Q_EMIT problemChanged();
}

void EventDraft::setStartProblem(const QString &problem)
{
    if (m_startProblem == problem)
        return;
    m_startProblem = problem;
    Q_EMIT startProblemChanged();
}

} // namespace randblatt
