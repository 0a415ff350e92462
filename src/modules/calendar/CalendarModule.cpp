#include "modules/calendar/CalendarModule.h"

#include "modules/calendar/AgendaModel.h"
#include "modules/calendar/AgendaRefresh.h"
#include "modules/calendar/EventDraft.h"

#include <QPointer>

namespace randblatt {

using namespace Qt::StringLiterals;

CalendarModule::CalendarModule(CalendarStore &store, SystemWake &wake, Preferences &preferences,
                               QObject *parent)
    : CalendarModule(
          store, wake, preferences, [] { return QDateTime::currentDateTime(); }, parent)
{
}

CalendarModule::CalendarModule(CalendarStore &store, SystemWake &wake, Preferences &preferences,
                               const CalendarService::Clock &clock, QObject *parent)
    : SidebarModule(parent)
    , m_service(new CalendarService(store, clock, this))
    , m_agenda(new AgendaModel(*m_service, this))
    , m_refresh(new AgendaRefresh(*m_service, store, wake, clock, this))
    , m_draft(new EventDraft(*m_service, preferences, clock, this))
{
    connect(m_service, &CalendarService::eventAdded, this, &CalendarModule::offerRemoval);
    connect(m_service, &CalendarService::removalFailed, this, &CalendarModule::offerRemoval);
}

void CalendarModule::offerRemoval(const SavedEvent &event)
{
    undoHistory()->push(u"Termin hinzugefügt"_s, [service = QPointer(m_service), event] {
        if (service)
            service->removeEvent(event);
    });
}

QString CalendarModule::id() const
{
    return u"calendar"_s;
}

QString CalendarModule::title() const
{
    return u"Kalender"_s;
}

QString CalendarModule::systemImage() const
{
    return u"calendar"_s;
}

ViewDescription CalendarModule::makeView() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Calendar/CalendarView.qml"_s),
            {{u"service"_s, QVariant::fromValue(m_service)},
             {u"agenda"_s, QVariant::fromValue(m_agenda)},
             {u"refresh"_s, QVariant::fromValue(m_refresh)},
             {u"draft"_s, QVariant::fromValue(m_draft)}}};
}

} // namespace randblatt
