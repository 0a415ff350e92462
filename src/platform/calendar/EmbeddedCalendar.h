#pragma once

#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/CalendarFile.h"
#include "platform/calendar/CalendarWorker.h"

#include <QFileSystemWatcher>

#include <memory>

namespace randblatt {

/// The calendar of machines without a calendar server: one iCalendar file, worked on by one thread that ends
/// when there is nothing to do. To be made on the main thread. A disk that hangs does not keep the destructor
/// for more than a moment.
class EmbeddedCalendar : public CalendarBackend
{
public:
    explicit EmbeddedCalendar(const QString &path);
    ~EmbeddedCalendar() override;

    /// `calendar.ics` in the application's folder under XDG_DATA_HOME (XDG Base Directory Specification).
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] QString name() const override;
    void setChangeHandler(std::function<void()> handler) override;
    void open(std::function<void(const CalendarOpening &opening)> completion) override;
    void fetchEvents(const QDateTime &start, const QDateTime &end,
                     std::function<void(const CalendarStore::Events &events)> completion) override;
    void fetchCalendars(std::function<void(const CalendarStore::Calendars &calendars)> completion) override;
    void saveEvent(const NewCalendarEvent &event,
                   std::function<void(const CalendarStore::Saved &saved)> completion) override;
    void removeEvent(const SavedEvent &event,
                     std::function<void(const CalendarStore::Removed &removed)> completion) override;

private:
    void watch();
    void look();

    const QString m_path;
    std::function<void()> m_changeHandler;
    QFileSystemWatcher m_watcher;
    /// Used on the worker's thread alone; lives as long as a task does that cannot be ended.
    std::shared_ptr<CalendarFile> m_file;
    CalendarWorker m_worker;
};

} // namespace randblatt
