#pragma once

#include "platform/CalendarStore.h"

#include <QObject>
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
    Q_PROPERTY(bool saving READ saving NOTIFY savingChanged FINAL)

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
    [[nodiscard]] bool saving() const { return m_saving; }
    [[nodiscard]] int daysAhead() const { return m_daysAhead; }

Q_SIGNALS:
    void accessRequested();
    void eventsChanged();
    void authorizedChanged();
    void statusMessageChanged();
    void savingChanged();
    void addFinished(bool saved);
    void eventAdded(const randblatt::SavedEvent &event);
    /// The store refused an event, for the given reason.
    void addFailed(const QString &problem);
    /// The event could not be removed for now.
    void removalFailed(const randblatt::SavedEvent &event);
    void reloaded(bool succeeded);

private:
    void setAuthorized(bool authorized);
    void setStatusMessage(const QString &message, const QString &reason = {});
    void setSaving(bool saving);
    void publish(const QList<CalendarEvent> &events);
    void finishAdd(const CalendarStore::Saved &saved);
    void finishRemoval(const SavedEvent &event, const CalendarStore::Removed &removed);

    CalendarStore &m_store;
    Clock m_clock;
    QList<CalendarEvent> m_events;
    QString m_statusMessage;
    QString m_reason;
    bool m_authorized = false;
    bool m_saving = false;
    int m_daysAhead = 7;
    /// Counts the reloads, so that only the latest one's answer is shown.
    int m_reload = 0;
};

} // namespace randblatt
