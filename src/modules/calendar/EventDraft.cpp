#include "modules/calendar/EventDraft.h"

#include "modules/calendar/DateTimeText.h"

#include <utility>

namespace randblatt {

EventDraft::EventDraft(CalendarService &service, CalendarService::Clock clock, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_clock(std::move(clock))
{
    connect(&service, &CalendarService::addFinished, this, &EventDraft::finish);
    beginView();
}

void EventDraft::beginView()
{
    if (m_isStartChosen || m_startText != DateTimeText::text(m_start))
        return;
    setStart(m_clock());
    m_isStartChosen = false;
}

bool EventDraft::commitStart()
{
    const TypedTime typed = DateTimeText::read(m_startText, m_start, m_clock());
    setStartProblem(typed.problem);
    if (!typed.problem.isEmpty())
        return false;
    if (typed.time != m_start)
        setStart(typed.time);
    else
        showStartText(DateTimeText::text(m_start));
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
    m_submittedTitle = m_title;
    m_service.addEvent(m_title, m_start, m_start.addSecs(m_durationMinutes * 60LL));
}

void EventDraft::finish(bool saved)
{
    if (!saved || m_title != m_submittedTitle)
        return;
    setTitle({});
    setOpen(false);
}

void EventDraft::setOpen(bool open)
{
    if (m_isOpen == open)
        return;
    m_isOpen = open;
    Q_EMIT openChanged();
}

void EventDraft::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    Q_EMIT titleChanged();
}

void EventDraft::setStart(const QDateTime &start)
{
    if (!DateTimeText::isWritable(start))
        return;
    m_isStartChosen = true;
    if (m_start != start) {
        m_start = start;
        Q_EMIT startChanged();
    }
    setStartProblem({});
    showStartText(DateTimeText::text(start));
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
    Q_EMIT durationMinutesChanged();
}

void EventDraft::showStartText(const QString &text)
{
    if (m_startText == text)
        return;
    m_startText = text;
    Q_EMIT startTextChanged();
}

void EventDraft::setStartProblem(const QString &problem)
{
    if (m_startProblem == problem)
        return;
    m_startProblem = problem;
    Q_EMIT startProblemChanged();
}

} // namespace randblatt
