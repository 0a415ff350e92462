#pragma once

#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/CalendarFile.h"

#include <QFileSystemWatcher>
#include <QThreadPool>

namespace randblatt {

/// The calendar of machines without a calendar server: one iCalendar file, worked on by one thread that ends
/// when there is nothing to do. To be made on the main thread.
class EmbeddedCalendar : public CalendarBackend
{
public:
    explicit EmbeddedCalendar(const QString &path);
    ~EmbeddedCalendar() override;

    /// `calendar.ics` in the application's folder under XDG_DATA_HOME (XDG Base Directory Specification).
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] QString name() const override;
    void setChangeHandler(std::function<void()> handler) override;
    void open(std::function<void(bool opened)> completion) override;
    void fetchEvents(const QDateTime &start, const QDateTime &end,
                     std::function<void(const CalendarStore::Events &events)> completion) override;
    void saveEvent(const NewCalendarEvent &event, std::function<void(bool saved)> completion) override;

private:
    void watch();
    void compare();

    /// Used on the pool's one thread alone.
    CalendarFile m_file;
    const QString m_path;
    std::function<void()> m_changeHandler;
    QFileSystemWatcher m_watcher;
    QThreadPool m_queue;
};

} // namespace randblatt
