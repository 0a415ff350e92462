#pragma once

#include "platform/calendar/CalendarIndex.h"

#include <QString>

#include <optional>

namespace randblatt {

/// The calendar in one iCalendar file that other programs may write as well. Each operation waits for the
/// disk; to be used on one thread at a time.
class CalendarFile
{
public:
    /// What tells one state of a file from another.
    struct Stamp
    {
        bool exists = false;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 modified = 0;

        friend bool operator==(const Stamp &, const Stamp &) = default;
    };

    explicit CalendarFile(QString path);

    [[nodiscard]] QString path() const { return m_path; }
    /// Makes the folder and sets aside a file that is no calendar. False if the file can't be read or made.
    bool open();
    /// See CalendarStore::fetchEvents(); none while the file cannot be read or is no calendar. A file that is
    /// not there yet has no events.
    [[nodiscard]] CalendarStore::Events events(const QDateTime &start, const QDateTime &end);
    /// Adds an event, leaving all else in the file as it is. When it returns true the file is on disk, whole.
    bool append(const NewCalendarEvent &event);
    /// The state that was last read or written.
    [[nodiscard]] Stamp stamp() const { return m_stamp; }
    [[nodiscard]] Stamp stampOnDisk() const;

private:
    enum class Outcome { read, unreadable, noCalendar };

    Outcome refresh();
    [[nodiscard]] std::optional<QByteArray> contents() const;
    bool setAside() const;
    bool write(const QByteArray &text);

    QString m_path;
    Stamp m_stamp;
    std::optional<CalendarIndex> m_index;
};

} // namespace randblatt
