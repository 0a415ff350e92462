#pragma once

#include "modules/calendar/CalendarService.h"

#include <QDate>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>

namespace randblatt {

class SystemWake;

/// Keeps an agenda that is looked at up to date: asks the service for access again, which loads the events,
/// when midnight has passed, the machine has woken or the store has reported a change; at once while the card
/// is on screen, else when it comes on screen again. What failed or was refused is tried again with growing
/// pauses while the card is on screen. Before the first request it leaves everything to the
/// view.
class AgendaRefresh : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The calendar module makes it.")

public:
    /// References are borrowed and must outlive the object.
    AgendaRefresh(CalendarService &service, CalendarStore &store, SystemWake &wake,
                  CalendarService::Clock clock, QObject *parent = nullptr);

    /// A card of the module has come on screen; every call is to be followed by one of cardHidden().
    Q_INVOKABLE void cardShown();
    Q_INVOKABLE void cardHidden();

private:
    void noteRequest();
    void noteAnswer(bool succeeded);
    void refreshIfOutdated();
    void waitForMidnight();
    [[nodiscard]] bool isOnScreen() const { return m_cardsOnScreen > 0; }

    CalendarService &m_service;
    CalendarService::Clock m_clock;
    int m_cardsOnScreen = 0;
    bool m_outdated = false;
    /// The day of the last request; invalid before the first.
    QDate m_requestedOn;
    QTimer m_midnight;
    /// A store that synchronises reports many changes: they cost one request.
    QTimer m_changes;
    static constexpr std::chrono::milliseconds shortestPause{2000};
    /// After the next failure.
    std::chrono::milliseconds m_pause = shortestPause;
    QTimer m_retry;
};

} // namespace randblatt
