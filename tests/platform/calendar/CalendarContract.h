#pragma once

#include "platform/CalendarStore.h"

#include <QTest>

#include <memory>

namespace randblatt {

/// What every calendar store does, whatever is behind it. A subclass makes the store over the events of an
/// iCalendar text; the tests run in the time zone Europe/Berlin.
class CalendarContract : public QObject
{
    Q_OBJECT

protected:
    /// A store that has the events of `ics` and nothing else.
    [[nodiscard]] virtual std::unique_ptr<CalendarStore> makeStore(const QByteArray &ics) = 0;
    /// Adds events as another program would.
    virtual void addByOthers(const QByteArray &ics) = 0;
    /// Gives a saved event one more property, as another program would.
    virtual void changeByOthers(const SavedEvent &event, const QByteArray &property) = 0;

    [[nodiscard]] static QByteArray calendar(const QByteArray &components);
    [[nodiscard]] static QByteArray event(const QByteArray &uid, const QByteArray &properties);
    [[nodiscard]] static bool access(CalendarStore &store);
    /// The answer for the days from `first` on.
    [[nodiscard]] static CalendarStore::Events fetch(CalendarStore &store, const QDate &first, int days);
    /// One line per event, sorted: "2026-10-25 09:00 – 2026-10-25 10:00 Titel", or "2026-10-25 +2 Titel" for
    /// an all-day event of two days.
    [[nodiscard]] static QStringList lines(const CalendarStore::Events &events);
    [[nodiscard]] static CalendarStore::Saved save(CalendarStore &store, const NewCalendarEvent &event);
    [[nodiscard]] static CalendarStore::Removed remove(CalendarStore &store, const SavedEvent &event);

private Q_SLOTS:
    void findsWhatTakesPlaceInTheRange_data();
    void findsWhatTakesPlaceInTheRange();
    void namesOccurrencesForGood();
    void savesAnEventThatItFindsAgain();
    void removesWhatItHasSaved();
    void savesAnEventOnceThatIsTriedTwice();
    void tellsOfChangesByOthers();
};

} // namespace randblatt
