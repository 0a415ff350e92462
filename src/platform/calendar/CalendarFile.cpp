#include "platform/calendar/CalendarFile.h"

#include "platform/calendar/IcalText.h"
#include "platform/files/ReplaceFile.h"
#include "platform/files/SystemReason.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <chrono>
#include <thread>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

constexpr auto defaultName = "Kalender"_L1;
constexpr qint64 sizeLimit = 64 * 1024 * 1024;

// Against programs that write all the time; with the pauses it is less than a second. Who writes without a
// detour leaves half a file for a moment, but what stays half a file is soon told of.
constexpr int attempts = 40;
constexpr int attemptsAtHalf = 12;
constexpr std::chrono::milliseconds longestPause = 25ms;

void pauseBefore(int attempt)
{
    std::this_thread::sleep_for(std::min<std::chrono::milliseconds>(1ms * attempt, longestPause));
}

QString damagedText()
{
    return u"Die Kalenderdatei ist unvollständig oder beschädigt."_s;
}

QString problemText(int error)
{
    if (error == EFBIG)
        return u"Die Kalenderdatei ist größer als 64 MB."_s;
    return u"Kalenderdatei: "_s + systemReason(error) + u'.';
}

} // namespace

CalendarFile::CalendarFile(QString path)
    : m_path(std::move(path))
{
}

bool CalendarFile::open()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    if (QFileInfo::exists(folder))
        return true;
    if (!QDir().mkpath(folder)) {
        qCWarning(lcCalendar, "Kalenderordner-Fehler: %ls", qUtf16Printable(folder));
        return false;
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return true;
}

CalendarStore::Events CalendarFile::events(const QDateTime &start, const QDateTime &end)
{
    if (const QString problem = refresh(); !problem.isEmpty())
        return CalendarStore::Events::failure(problem);
    FileReading reading;
    const auto excerpt = [this, &reading](const IcalOutline::Range &place) -> QByteArray {
        if (!reading.version && reading.error == 0)
            reading = readFile(m_path, sizeLimit);
        // Of another version of the file it might be anything.
        if (!reading.version || reading.version->stamp != m_stamp)
            return {};
        return reading.version->contents.sliced(place.begin, place.length);
    };
    auto found = m_index->events(start, end, {}, excerpt);
    if (m_index->name().isEmpty()) {
        for (CalendarEvent &event : found)
            event.calendarName = defaultName;
    }
    return found;
}

CalendarStore::Saved CalendarFile::append(const NewCalendarEvent &event)
{
    const QByteArray component = newEventText(event);
    const QString problem = rewrite([&](QByteArray text) -> Change {
        if (findEvent(text, event.uid.toUtf8()).count != EventPlace::Count::none)
            return {};
        insertComponent(text, component);
        return {.text = text};
    });
    if (!problem.isEmpty())
        return CalendarStore::Saved::failure(problem);
    return SavedEvent{{}, event.uid, eventFingerprint(component)};
}

CalendarStore::Removed CalendarFile::remove(const SavedEvent &event)
{
    Removal removal = Removal::removed;
    const QString problem = rewrite([&event, &removal](QByteArray text) -> Change {
        const EventPlace place = findEvent(text, event.uid.toUtf8());
        const bool isSame = place.count == EventPlace::Count::one &&
                            eventFingerprint(text.sliced(place.begin, place.length)) == event.fingerprint;
        removal = isSame                                   ? Removal::removed
                  : place.count == EventPlace::Count::none ? Removal::gone
                                                           : Removal::changed;
        return isSame ? Change{.text = text.remove(place.begin, place.length)} : Change{};
    });
    if (!problem.isEmpty())
        return CalendarStore::Removed::failure(problem);
    return removal;
}

bool CalendarFile::hasChanged() const
{
    return fileStamp(m_path) != m_stamp;
}

QString CalendarFile::refresh()
{
    if (m_index && m_stamp && m_stamp == fileStamp(m_path))
        return {};
    m_index.reset();
    m_stamp = fileStamp(m_path);
    Contents found = contents();
    if (found.version)
        m_stamp = found.version->stamp;
    if (found.problem.isEmpty()) {
        m_index = CalendarIndex::parse(found.calendar);
        if (!m_index)
            found.problem = damagedText();
    }
    if (m_problem != found.problem && !found.problem.isEmpty())
        qCWarning(lcCalendar, "%ls (%ls)", qUtf16Printable(found.problem), qUtf16Printable(m_path));
    m_problem = found.problem;
    return m_problem;
}

CalendarFile::Contents CalendarFile::contents() const
{
    FileReading reading = readFile(m_path, sizeLimit);
    if (!reading.version && reading.error != ENOENT)
        return {.problem = problemText(reading.error)};
    Contents contents{.version = std::move(reading.version)};
    if (contents.version && !contents.version->contents.trimmed().isEmpty())
        contents.calendar = contents.version->contents;
    else
        contents.calendar = emptyCalendarText();
    return contents;
}

/// Replaces the file by what `edit` makes of its text; on conflict with another program, by what it makes of
/// that program's. Gives the reason if that can't be done.
template <typename Edit>
QString CalendarFile::rewrite(const Edit &edit)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        pauseBefore(attempt);
        const Contents found = contents();
        if (!found.problem.isEmpty())
            return found.problem;
        if (!CalendarIndex::isCalendar(found.calendar)) {
            if (attempt < attemptsAtHalf)
                continue;
            return damagedText();
        }
        const Change change = edit(found.calendar);
        if (change.text.isEmpty())
            return change.problem;
        if (change.text.size() > sizeLimit)
            return problemText(EFBIG);
        const FileReplacement result = replaceFile(m_path, found.version, change.text);
        if (!result.kept.isEmpty())
            qCWarning(lcCalendar, "Andere Fassung aufbewahrt: %ls", qUtf16Printable(result.kept));
        if (result.outcome == FileReplacement::Outcome::replaced) {
            (void)refresh();
            return {};
        }
        if (result.outcome == FileReplacement::Outcome::failed) {
            const QString problem = problemText(result.error);
            qCWarning(lcCalendar, "Kalender-Schreibfehler: %ls (%ls)", qUtf16Printable(problem),
                      qUtf16Printable(m_path));
            return problem;
        }
    }
    return u"Ein anderes Programm schreibt gerade in die Kalenderdatei."_s;
}

} // namespace randblatt
