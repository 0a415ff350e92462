#pragma once

#include "platform/CalendarStore.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace randblatt {

/// The agenda's model: the events of the coming days from all calendars, and a way to add one. It loads only
/// with a granted access, a saved event, and when it is told to. The store works elsewhere, so outcomes come
/// later, as changes of the properties.
class CalendarService : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The calendar module makes its service.")
    Q_PROPERTY(bool authorized READ authorized NOTIFY authorizedChanged FINAL)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged FINAL)
    Q_PROPERTY(QString reason READ reason NOTIFY statusMessageChanged FINAL)
    Q_PROPERTY(bool isOutdated READ isOutdated NOTIFY statusMessageChanged FINAL)
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged FINAL)
    Q_PROPERTY(bool saving READ saving NOTIFY savingChanged FINAL)
    Q_PROPERTY(QVariantList calendars READ calendarEntries NOTIFY calendarsChanged FINAL)

public:
    using Clock = std::function<QDateTime()>;

    /// `store` is borrowed and must outlive the service.
    explicit CalendarService(CalendarStore &store, QObject *parent = nullptr);
    /// The same with a clock of its own.
    CalendarService(CalendarStore &store, Clock clock, QObject *parent = nullptr);

    /// Asks the store for access to the calendars, and loads the events when it is granted.
    Q_INVOKABLE void requestAccess();
    /// Loads the events from today's midnight until midnight after daysAhead() days.
    Q_INVOKABLE void reload();
    /// Saves an event in the default calendar and tells the outcome with addFinished(), once for each call.
    /// The title is trimmed; without a title or without access nothing is saved. An event lasts five minutes
    /// at least. Calls while an event is being saved are ignored. Who tries again after a failure gives the
    /// same `uid`, so that the event is not saved twice.
    Q_INVOKABLE void addEvent(const QString &title, const QDateTime &start, const QDateTime &end,
                              const QString &uid = newUid());
    /// The same for an event that is put together: its end, uid, days and calendar are taken as they are.
    void addEvent(const NewCalendarEvent &event);
    /// Removes an event that eventAdded() has told of, unless somebody has changed it since.
    void removeEvent(const SavedEvent &event);

    /// A name for an event that no other one has.
    [[nodiscard]] static QString newUid();

    /// Sorted by start; events that start together are in the store's order.
    [[nodiscard]] const QList<CalendarEvent> &events() const { return m_events; }
    /// Whether the last request for access was granted.
    [[nodiscard]] bool authorized() const { return m_authorized; }
    /// What is to be said instead of, or above, the agenda; empty when there is nothing to say.
    [[nodiscard]] QString statusMessage() const { return m_statusMessage; }
    /// Why it is so, where statusMessage() tells of a failure: a sentence to be said before it. Empty where
    /// nobody knows.
    [[nodiscard]] QString reason() const { return m_reason; }
    /// Whether the last attempt to load the events has failed.
    [[nodiscard]] bool isOutdated() const { return m_isOutdated; }
    /// Whether an answer is being waited for.
    [[nodiscard]] bool loading() const { return m_loading > 0; }
    [[nodiscard]] bool saving() const { return m_saving; }
    /// The calendars that events can be added to, the one for new events first.
    [[nodiscard]] const QList<WritableCalendar> &calendars() const { return m_calendars; }
    /// The same to show: each an object with `id`, `name` and `color`.
    [[nodiscard]] QVariantList calendarEntries() const;
    [[nodiscard]] int daysAhead() const { return m_daysAhead; }

Q_SIGNALS:
    void accessRequested();
    void eventsChanged();
    void authorizedChanged();
    void statusMessageChanged();
    void loadingChanged();
    void savingChanged();
    void calendarsChanged();
    void addFinished(bool saved);
    void eventAdded(const randblatt::SavedEvent &event);
    /// The store refused an event, for the given reason.
    void addFailed(const QString &problem);
    /// The event could not be removed for now.
    void removalFailed(const randblatt::SavedEvent &event);
    /// A request for access or for the events has ended; a refusal is a failure.
    void reloaded(bool succeeded);

private:
    void setAuthorized(bool authorized);
    void setStatusMessage(const QString &message, const QString &reason = {});
    void setSaving(bool saving);
    void countLoading(int step);
    void finishReload(const CalendarStore::Events &events);
    void fetchCalendars();
    void publish(const QList<CalendarEvent> &events);
    void finishAdd(const CalendarStore::Saved &saved);
    void finishRemoval(const SavedEvent &event, const CalendarStore::Removed &removed);

    CalendarStore &m_store;
    Clock m_clock;
    QList<CalendarEvent> m_events;
    QList<WritableCalendar> m_calendars;
    QString m_statusMessage;
    QString m_reason;
    bool m_authorized = false;
    bool m_isOutdated = false;
    int m_loading = 0;
    bool m_saving = false;
    int m_daysAhead = 7;
    /// Counts the reloads, so that only the latest one's answer is shown.
    int m_reload = 0;
};

} // namespace randblatt
