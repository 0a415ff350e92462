#pragma once

#include "modules/calendar/CalendarService.h"
#include "settings/Draft.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The event that is being put together, and whether its form is open. It outlives the views that show it and
/// the process. What is typed is here with every letter, so that nothing depends on where the keyboard is.
class EventDraft : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The calendar module makes it.")
    Q_PROPERTY(bool open READ isOpen WRITE setOpen NOTIFY openChanged FINAL)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged FINAL)
    Q_PROPERTY(QDateTime start READ start WRITE setStart NOTIFY startChanged FINAL)
    Q_PROPERTY(QString startText READ startText WRITE setStartText NOTIFY startTextChanged FINAL)
    Q_PROPERTY(QString startProblem READ startProblem NOTIFY startProblemChanged FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)
    Q_PROPERTY(
        int durationMinutes READ durationMinutes WRITE setDurationMinutes NOTIFY durationMinutesChanged FINAL)
    Q_PROPERTY(bool allDay READ isAllDay WRITE setAllDay NOTIFY allDayChanged FINAL)
    Q_PROPERTY(QString calendar READ calendar WRITE setCalendar NOTIFY calendarChanged FINAL)

public:
    /// References are borrowed and must outlive the draft.
    EventDraft(CalendarService &service, Preferences &preferences, CalendarService::Clock clock,
               QObject *parent = nullptr);

    /// A view has been made or shown again: unless the form is open, or something is typed, it starts now.
    Q_INVOKABLE void beginView();
    /// Takes what is typed for the start. False if it is not understood: then it stays, with a problem.
    Q_INVOKABLE bool commitStart();
    /// Takes what is typed, and steps the number under the cursor of its text.
    Q_INVOKABLE void stepStart(int cursor, int steps);
    /// Puts the start on another day; months count from 0.
    Q_INVOKABLE void chooseDay(int year, int month, int day);
    /// Has the service add the event, unless its start is not understood. Once it is saved, the title is
    /// emptied and the form closed, unless another title has been typed meanwhile.
    Q_INVOKABLE void add();

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    void setOpen(bool open);
    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString &title);
    /// The start that was last understood.
    [[nodiscard]] QDateTime start() const { return m_start; }
    void setStart(const QDateTime &start);
    /// The start as it is typed.
    [[nodiscard]] QString startText() const { return m_startText; }
    void setStartText(const QString &text);
    /// Why the typed start could not be taken; empty until that is tried, and once it can be.
    [[nodiscard]] QString startProblem() const { return m_startProblem; }
    /// Why the event could not be saved; empty until that is tried, and from the next change on.
    [[nodiscard]] QString problem() const { return m_problem; }
    [[nodiscard]] int durationMinutes() const { return m_durationMinutes; }
    void setDurationMinutes(int minutes);
    /// Whether the event takes the whole day of its start; then its time and duration count for nothing.
    [[nodiscard]] bool isAllDay() const { return m_isAllDay; }
    void setAllDay(bool allDay);
    /// The id of the calendar that the event goes to: the chosen one while it can be written, else the one
    /// for new events.
    [[nodiscard]] QString calendar() const;
    void setCalendar(const QString &id);

Q_SIGNALS:
    void openChanged();
    void titleChanged();
    void startChanged();
    void startTextChanged();
    void startProblemChanged();
    void problemChanged();
    void durationMinutesChanged();
    void allDayChanged();
    void calendarChanged();

private:
    void restore();
    void store();
    void changeEvent();
    [[nodiscard]] bool isStartPending() const;
    [[nodiscard]] QString writtenStart() const;
    void showStartText(const QString &text);
    void setStartProblem(const QString &problem);
    void setProblem(const QString &problem);
    void finish(bool saved);

    CalendarService &m_service;
    CalendarService::Clock m_clock;
    Draft m_stored;
    bool m_isOpen = false;
    QString m_title;
    QDateTime m_start;
    QString m_startText;
    QString m_startProblem;
    QString m_problem;
    int m_durationMinutes = 60;
    bool m_isAllDay = false;
    /// Empty until one is chosen, or an event has been sent to one.
    QString m_calendar;
    /// The title of the event that is being saved.
    QString m_submittedTitle;
    /// Names the event from the first attempt to save it until it is another one.
    QString m_uid;
};

} // namespace randblatt
