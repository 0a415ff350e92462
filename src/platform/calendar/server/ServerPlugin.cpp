#include "platform/calendar/CalendarBackendFactory.h"
#include "platform/calendar/server/EvolutionCalendar.h"

#include <QObject>

namespace randblatt {

/// The plugin's root.
class ServerPlugin : public QObject, public CalendarBackendFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.randblatt.Quillbar.CalendarBackendFactory/1")
    Q_INTERFACES(randblatt::CalendarBackendFactory)

public:
    [[nodiscard]] std::unique_ptr<CalendarBackend> makeBackend(const QString &serverName) override
    {
        return std::make_unique<EvolutionCalendar>(serverName);
    }
};

} // namespace randblatt

#include "ServerPlugin.moc"
