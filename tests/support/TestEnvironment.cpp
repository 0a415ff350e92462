#include "support/TestEnvironment.h"

namespace randblatt {

TestEnvironment::TestEnvironment()
{
    qputenv("HOME", m_folder.path().toLocal8Bit());
    for (const char *variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        qputenv(variable, m_folder.filePath(QLatin1StringView(variable)).toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

} // namespace randblatt
