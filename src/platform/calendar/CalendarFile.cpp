#include "platform/calendar/CalendarFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

constexpr auto defaultName = "Kalender"_L1;
constexpr auto emptyCalendar = "BEGIN:VCALENDAR\r\n"
                               "VERSION:2.0\r\n"
                               "PRODID:-//Quillbar//Kalender//DE\r\n"
                               "END:VCALENDAR\r\n";

/// Where the last calendar of a whole text ends.
qsizetype endOfCalendar(const QByteArray &text)
{
    return text.toUpper().lastIndexOf("END:VCALENDAR");
}

/// Makes a rename last through a power failure.
void syncFolder(const QString &path)
{
    const int folder = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

} // namespace

CalendarFile::CalendarFile(QString path)
    : m_path(std::move(path))
{
}

bool CalendarFile::open()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder)) {
            qCWarning(lcCalendar, "Kalenderordner-Fehler: %ls", qUtf16Printable(folder));
            return false;
        }
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    const bool isFirst = !m_index;
    const Outcome outcome = refresh();
    if (outcome == Outcome::noCalendar && isFirst)
        return setAside() && refresh() == Outcome::read;
    return outcome != Outcome::unreadable;
}

CalendarStore::Events CalendarFile::events(const QDateTime &start, const QDateTime &end)
{
    if (refresh() != Outcome::read)
        return std::nullopt;
    auto found = m_index->events(start, end);
    if (m_index->name().isEmpty()) {
        for (CalendarEvent &event : found)
            event.calendarName = defaultName;
    }
    return found;
}

bool CalendarFile::append(const NewCalendarEvent &event)
{
    auto text = contents();
    if (!text)
        return false;
    if (text->trimmed().isEmpty()) {
        text = emptyCalendar;
    } else if (!CalendarIndex::isCalendar(*text)) {
        if (!setAside())
            return false;
        text = emptyCalendar;
    }
    QByteArray encoded = newEventText(event);
    if (!text->contains("\r\n"))
        encoded.replace("\r\n", "\n");
    text->insert(endOfCalendar(*text), encoded);
    return write(*text);
}

CalendarFile::Stamp CalendarFile::stampOnDisk() const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return {};
    return {true, status.st_ino, status.st_size,
            status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

CalendarFile::Outcome CalendarFile::refresh()
{
    const Stamp stamp = stampOnDisk();
    if (m_index && stamp == m_stamp)
        return Outcome::read;
    m_index.reset();
    m_stamp = stamp;
    auto text = contents();
    if (!text)
        return Outcome::unreadable;
    m_index = CalendarIndex::parse(text->trimmed().isEmpty() ? QByteArray(emptyCalendar) : *text);
    if (m_index)
        return Outcome::read;
    qCWarning(lcCalendar, "Kein Kalender: %ls", qUtf16Printable(m_path));
    return Outcome::noCalendar;
}

std::optional<QByteArray> CalendarFile::contents() const
{
    QFile file(m_path);
    if (!file.exists())
        return QByteArray();
    if (!file.open(QFile::ReadOnly)) {
        qCWarning(lcCalendar, "Kalender nicht lesbar: %ls", qUtf16Printable(file.errorString()));
        return std::nullopt;
    }
    return file.readAll();
}

bool CalendarFile::setAside() const
{
    const QString aside =
        m_path + QDateTime::currentDateTime().toString(u"'.unlesbar-'yyyyMMdd-HHmmss-zzz"_s);
    if (!QFile::rename(m_path, aside)) {
        qCWarning(lcCalendar, "Kalender lässt sich nicht beiseitelegen: %ls", qUtf16Printable(m_path));
        return false;
    }
    qCWarning(lcCalendar, "Unlesbarer Kalender beiseitegelegt: %ls", qUtf16Printable(aside));
    return true;
}

bool CalendarFile::write(const QByteArray &text)
{
    // Takes the place of the old file only when all of it is on disk.
    QSaveFile file(m_path);
    const bool isNew = !QFile::exists(m_path);
    if (!file.open(QFile::WriteOnly) || file.write(text) != text.size() || !file.flush()) {
        qCWarning(lcCalendar, "Kalender-Schreibfehler: %ls", qUtf16Printable(file.errorString()));
        return false;
    }
    if (isNew)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (::fsync(file.handle()) != 0 || !file.commit()) {
        qCWarning(lcCalendar, "Kalender-Schreibfehler: %ls", qUtf16Printable(file.errorString()));
        return false;
    }
    syncFolder(QFileInfo(m_path).absolutePath());
    refresh();
    return true;
}

} // namespace randblatt
