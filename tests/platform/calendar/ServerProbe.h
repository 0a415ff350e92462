#pragma once

#include <QByteArray>
#include <QStringList>

struct _ECalClient;
struct _ESource;
struct _ESourceRegistry;

namespace randblatt {

/// The calendar server as another program sees it, through its own client library.
class ServerProbe
{
public:
    /// Connects to the server on the session bus of the environment, with its default calendar.
    ServerProbe();
    ~ServerProbe();
    ServerProbe(const ServerProbe &) = delete;
    ServerProbe &operator=(const ServerProbe &) = delete;

    /// Removes all events.
    void clear();
    /// Adds the events of a calendar with its zones.
    void add(const QByteArray &ics);
    /// Adds a property, as "LOCATION:Garten", to the event of that uid.
    void change(const QByteArray &uid, const QByteArray &property);
    /// The titles of all events.
    [[nodiscard]] QStringList titles() const;
    /// Makes a further calendar of the given name that nothing can be read from.
    void addBrokenCalendar(const QByteArray &name);
    void removeBrokenCalendar();
    /// Makes the server's calendar of birthdays, which cannot be written, the default one, or the first
    /// again.
    void useReadOnlyDefault(bool readOnly);

private:
    _ESourceRegistry *m_registry = nullptr;
    _ECalClient *m_client = nullptr;
    _ESource *m_broken = nullptr;
};

} // namespace randblatt
