#include "platform/calendar/EmbeddedCalendar.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace randblatt {

using namespace Qt::StringLiterals;

EmbeddedCalendar::EmbeddedCalendar(const QString &path)
    : m_path(path)
    , m_file(std::make_shared<CalendarFile>(path))
{
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_watcher, [this] { look(); });
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, [this] { look(); });
}

EmbeddedCalendar::~EmbeddedCalendar() = default;

QString EmbeddedCalendar::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/quillbar/calendar.ics"_L1;
}

QString EmbeddedCalendar::name() const
{
    return m_path;
}

void EmbeddedCalendar::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

void EmbeddedCalendar::open(std::function<void(const CalendarOpening &)> completion)
{
    m_worker.start([this, gate = m_worker.gate(), file = m_file, completion = std::move(completion)] {
        const bool opened = guarded([&file] { return file->open(); }, [](const QString &) { return false; });
        gate->pass([&] {
            // The folder is there only now.
            QMetaObject::invokeMethod(
                &m_watcher, [this] { watch(); }, Qt::QueuedConnection);
            using Outcome = CalendarOpening::Outcome;
            completion(opened ? CalendarOpening{Outcome::opened}
                              : CalendarOpening{Outcome::failed, u"Der Ordner des Kalenders fehlt."_s});
        });
    });
}

void EmbeddedCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                   std::function<void(const CalendarStore::Events &)> completion)
{
    m_worker.start<CalendarStore::Events>([file = m_file, start, end] { return file->events(start, end); },
                                          std::move(completion));
}

void EmbeddedCalendar::fetchCalendars(std::function<void(const CalendarStore::Calendars &)> completion)
{
    m_worker.start<CalendarStore::Calendars>([] { return QList<WritableCalendar>{{}}; },
                                             std::move(completion));
}

void EmbeddedCalendar::saveEvent(const NewCalendarEvent &event,
                                 std::function<void(const CalendarStore::Saved &)> completion)
{
    m_worker.start<CalendarStore::Saved>([file = m_file, event] { return file->append(event); },
                                         std::move(completion));
}

void EmbeddedCalendar::removeEvent(const SavedEvent &event,
                                   std::function<void(const CalendarStore::Removed &)> completion)
{
    m_worker.start<CalendarStore::Removed>([file = m_file, event] { return file->remove(event); },
                                           std::move(completion));
}

void EmbeddedCalendar::watch()
{
    // A file that is replaced is watched no longer, and one that does not exist yet cannot be: the folder
    // tells of both; so does, for a symbolic link, the folder that it leads to.
    const auto add = [this](const QString &path, const QStringList &watched) {
        if (!watched.contains(path) && QFileInfo::exists(path))
            m_watcher.addPath(path);
    };
    const QFileInfo file(m_path);
    const QString target = file.exists() ? file.canonicalFilePath() : file.symLinkTarget();
    add(file.absolutePath(), m_watcher.directories());
    if (!target.isEmpty())
        add(QFileInfo(target).absolutePath(), m_watcher.directories());
    add(m_path, m_watcher.files());
}

void EmbeddedCalendar::look()
{
    watch();
    m_worker.start([gate = m_worker.gate(), file = m_file, changed = m_changeHandler] {
        if (changed && file->hasChanged())
            gate->pass(changed);
    });
}

} // namespace randblatt
