#include "modules/calendar/AgendaRefresh.h"

#include "platform/SystemWake.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

constexpr auto changesQuiet = 300ms;
// A server that fails again and again tells of a change each time.
constexpr auto changesQuietOnFailure = 1000ms;
constexpr std::chrono::milliseconds longestPause = 5min;
// The timer does not know of a clock that is set: it looks again now and then.
constexpr std::chrono::milliseconds longestWait = 15min;

} // namespace

AgendaRefresh::AgendaRefresh(CalendarService &service, CalendarStore &store, SystemWake &wake,
                             CalendarService::Clock clock, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_clock(std::move(clock))
{
    m_midnight.setSingleShot(true);
    m_changes.setSingleShot(true);
    m_retry.setSingleShot(true);
    connect(&service, &CalendarService::accessRequested, this, &AgendaRefresh::noteRequest);
    connect(&service, &CalendarService::reloaded, this, &AgendaRefresh::noteAnswer);
    connect(&store, &CalendarStore::changed, this, [this] {
        m_outdated = true;
        if (isOnScreen() && !m_changes.isActive())
            m_changes.start(m_retry.isActive() ? changesQuietOnFailure : changesQuiet);
    });
    connect(&wake, &SystemWake::woke, this, [this] {
        m_outdated = true;
        refreshIfOutdated();
    });
    connect(&m_changes, &QTimer::timeout, this, &AgendaRefresh::refreshIfOutdated);
    connect(&m_retry, &QTimer::timeout, this, &AgendaRefresh::refreshIfOutdated);
    connect(&m_midnight, &QTimer::timeout, this, &AgendaRefresh::refreshIfOutdated);
}

void AgendaRefresh::cardShown()
{
    ++m_cardsOnScreen;
    refreshIfOutdated();
}

void AgendaRefresh::cardHidden()
{
    --m_cardsOnScreen;
    if (isOnScreen())
        return;
    m_midnight.stop();
    m_changes.stop();
    m_retry.stop();
}

void AgendaRefresh::noteRequest()
{
    m_outdated = false;
    m_requestedOn = m_clock().date();
}

void AgendaRefresh::noteAnswer(bool succeeded)
{
    m_retry.stop();
    if (succeeded) {
        m_pause = shortestPause;
        return;
    }
    m_outdated = true;
    if (!isOnScreen())
        return;
    m_retry.start(m_pause);
    m_pause = std::min(2 * m_pause, longestPause);
}

void AgendaRefresh::refreshIfOutdated()
{
    if (!isOnScreen())
        return;
    waitForMidnight();
    if (m_requestedOn.isValid() && (m_outdated || m_clock().date() != m_requestedOn))
        m_service.requestAccess();
}

void AgendaRefresh::waitForMidnight()
{
    const QDateTime now = m_clock();
    const std::chrono::milliseconds left(now.msecsTo(now.date().addDays(1).startOfDay()));
    m_midnight.start(std::clamp(left, 1ms, longestWait));
}

} // namespace randblatt
