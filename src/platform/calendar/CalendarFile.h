#pragma once

#include "platform/calendar/CalendarIndex.h"
#include "platform/files/FileVersion.h"

#include <QString>

#include <optional>

namespace randblatt {

/// The calendar in one iCalendar file that other programs may write as well. Each operation waits for the
/// disk; to be used on one thread at a time. Reading changes nothing, whatever is there; a file that is not
/// understood is not written to either.
class CalendarFile
{
public:
    explicit CalendarFile(QString path);

    [[nodiscard]] QString path() const { return m_path; }
    /// Makes the folder. False if that can't be done.
    bool open();
    /// See CalendarStore::fetchEvents(); none while the file cannot be read or is no calendar. A file that is
    /// not there yet has no events.
    [[nodiscard]] CalendarStore::Events events(const QDateTime &start, const QDateTime &end);
    /// Adds an event, leaving all else in the file as it is, also what another program has just written. Once
    /// it answers with the event, the file is on disk, whole.
    [[nodiscard]] CalendarStore::Saved append(const NewCalendarEvent &event);
    /// See CalendarStore::removeEvent().
    [[nodiscard]] CalendarStore::Removed remove(const SavedEvent &event);
    /// Whether the file is another one than was last read or looked at.
    [[nodiscard]] bool hasChanged() const;

private:
    /// What the file has, or why that is not known.
    struct Contents
    {
        /// None where there is no file.
        std::optional<FileVersion> version = {};
        QByteArray calendar = {};
        QString problem = {};
    };

    /// What is to become of a text: a new one, or why there is none.
    struct Change
    {
        QByteArray text = {};
        QString problem = {};
    };

    [[nodiscard]] Contents contents() const;
    [[nodiscard]] QString refresh();
    template <typename Edit>
    [[nodiscard]] QString rewrite(const Edit &edit);

    QString m_path;
    /// Of what was last read; none if that was no regular file.
    std::optional<FileStamp> m_stamp;
    std::optional<CalendarIndex> m_index;
    /// Why the file could not be read; it is told once.
    QString m_problem;
};

} // namespace randblatt
