#include "platform/calendar/EmbeddedCalendar.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <chrono>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

EmbeddedCalendar::EmbeddedCalendar(const QString &path)
    : m_file(path)
    , m_path(path)
{
    m_queue.setMaxThreadCount(1);
    m_queue.setExpiryTimeout(std::chrono::milliseconds(5s).count());
    const auto look = [this] {
        watch();
        m_queue.start([this] { compare(); });
    };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_watcher, look);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, look);
}

EmbeddedCalendar::~EmbeddedCalendar()
{
    m_queue.waitForDone();
}

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

void EmbeddedCalendar::open(std::function<void(bool)> completion)
{
    m_queue.start([this, completion = std::move(completion)] {
        const bool opened = m_file.open();
        // The folder is there only now.
        QMetaObject::invokeMethod(
            &m_watcher, [this] { watch(); }, Qt::QueuedConnection);
        completion(opened);
    });
}

void EmbeddedCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                   std::function<void(const CalendarStore::Events &)> completion)
{
    m_queue.start(
        [this, start, end, completion = std::move(completion)] { completion(m_file.events(start, end)); });
}

void EmbeddedCalendar::saveEvent(const NewCalendarEvent &event, std::function<void(bool)> completion)
{
    m_queue.start([this, event, completion = std::move(completion)] { completion(m_file.append(event)); });
}

void EmbeddedCalendar::watch()
{
    // A file that is replaced is watched no longer, and one that does not exist yet cannot be: the folder
    // tells of both.
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!m_watcher.directories().contains(folder) && QFileInfo::exists(folder))
        m_watcher.addPath(folder);
    if (!m_watcher.files().contains(m_path) && QFileInfo::exists(m_path))
        m_watcher.addPath(m_path);
}

void EmbeddedCalendar::compare()
{
    if (m_changeHandler && m_file.stampOnDisk() != m_file.stamp())
        m_changeHandler();
}

} // namespace randblatt
