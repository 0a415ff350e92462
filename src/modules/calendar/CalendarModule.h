#pragma once

#include "modules/calendar/CalendarService.h"
#include "settings/SidebarModule.h"

namespace randblatt {

class AgendaModel;
class AgendaRefresh;
class EventDraft;
class Preferences;
class SystemWake;

/// The calendar: an agenda of the coming days, and a form to add an event.
class CalendarModule : public SidebarModule
{
    Q_OBJECT

public:
    /// `store`, `wake` and `preferences` are borrowed and must outlive the module.
    CalendarModule(CalendarStore &store, SystemWake &wake, Preferences &preferences,
                   QObject *parent = nullptr);
    /// The same with a clock of its own.
    CalendarModule(CalendarStore &store, SystemWake &wake, Preferences &preferences,
                   const CalendarService::Clock &clock, QObject *parent = nullptr);

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;

    [[nodiscard]] CalendarService *service() const { return m_service; }
    [[nodiscard]] EventDraft *draft() const { return m_draft; }

private:
    void offerRemoval(const SavedEvent &event);

    CalendarService *m_service;
    AgendaModel *m_agenda;
    AgendaRefresh *m_refresh;
    EventDraft *m_draft;
};

} // namespace randblatt
