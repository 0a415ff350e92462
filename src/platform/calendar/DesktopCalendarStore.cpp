#include "platform/calendar/DesktopCalendarStore.h"

#include <QLoggingCategory>
#include <QPointer>

#include <type_traits>
#include <utility>

namespace randblatt {

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

CalendarStore::Access access(const CalendarOpening &opening)
{
    if (opening.outcome == CalendarOpening::Outcome::opened)
        return CalendarAccess();
    return CalendarStore::Access::failure(opening.reason);
}

} // namespace

DesktopCalendarStore::DesktopCalendarStore(std::vector<std::unique_ptr<CalendarBackend>> candidates,
                                           QObject *parent)
    : CalendarStore(parent)
    , m_candidates(std::move(candidates))
{
    // The destructor ends the back ends first: their threads never meet a store that is gone.
    for (const auto &candidate : m_candidates)
        candidate->setChangeHandler(
            [this] { QMetaObject::invokeMethod(this, &CalendarStore::changed, Qt::QueuedConnection); });
}

DesktopCalendarStore::~DesktopCalendarStore()
{
    m_candidates.clear();
}

template <typename Answer>
auto DesktopCalendarStore::onMainThread(QObject *context, std::function<void(Answer)> completion)
{
    return [this, context = QPointer(context), completion = std::move(completion)](Answer answer) {
        const auto deliver = [context, completion, answer = std::decay_t<Answer>(answer)] {
            if (context)
                completion(answer);
        };
        QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
    };
}

void DesktopCalendarStore::requestAccess(QObject *context, std::function<void(const Access &)> completion)
{
    const auto answer = onMainThread(context, std::move(completion));
    if (m_chosen != nullptr)
        m_chosen->open([answer](const CalendarOpening &opening) { answer(access(opening)); });
    else
        tryCandidate(0, answer);
}

void DesktopCalendarStore::tryCandidate(size_t index, const std::function<void(const Access &)> &completion)
{
    if (index >= m_candidates.size()) {
        completion(Access::failure());
        return;
    }
    const auto finish = [this, index, completion](const CalendarOpening &opening) {
        if (opening.outcome == CalendarOpening::Outcome::absent && m_chosen == nullptr) {
            tryCandidate(index + 1, completion);
            return;
        }
        if (opening.outcome == CalendarOpening::Outcome::opened)
            choose(index);
        completion(access(opening));
    };
    m_candidates.at(index)->open(onMainThread<const CalendarOpening &>(this, finish));
}

void DesktopCalendarStore::choose(size_t index)
{
    if (m_chosen != nullptr)
        return;
    m_chosen = m_candidates.at(index).get();
    qCInfo(lcCalendar, "Kalender: %ls", qUtf16Printable(m_chosen->name()));
}

void DesktopCalendarStore::fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                                       std::function<void(const Events &)> completion)
{
    const auto answer = onMainThread(context, std::move(completion));
    if (m_chosen != nullptr)
        m_chosen->fetchEvents(start, end, answer);
    else
        answer(Events::failure());
}

void DesktopCalendarStore::fetchCalendars(QObject *context, std::function<void(const Calendars &)> completion)
{
    const auto answer = onMainThread(context, std::move(completion));
    if (m_chosen != nullptr)
        m_chosen->fetchCalendars(answer);
    else
        answer(Calendars::failure());
}

void DesktopCalendarStore::saveEvent(const NewCalendarEvent &event, QObject *context,
                                     std::function<void(const Saved &)> completion)
{
    const auto answer = onMainThread(context, std::move(completion));
    if (m_chosen != nullptr)
        m_chosen->saveEvent(event, answer);
    else
        answer(Saved::failure());
}

void DesktopCalendarStore::removeEvent(const SavedEvent &event, QObject *context,
                                       std::function<void(const Removed &)> completion)
{
    const auto answer = onMainThread(context, std::move(completion));
    if (m_chosen != nullptr)
        m_chosen->removeEvent(event, answer);
    else
        answer(Removed::failure());
}

} // namespace randblatt
