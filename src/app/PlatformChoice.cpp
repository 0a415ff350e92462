#include "app/PlatformChoice.h"

#ifdef QUILLBAR_WAYLAND
#include "platform/wayland/WaylandSession.h"
#endif

#include <QByteArray>

namespace randblatt {

namespace {

constexpr const char *variable = "QT_QPA_PLATFORM";

} // namespace

PlatformChoice::PlatformChoice()
{
#ifdef QUILLBAR_WAYLAND
    if (!qEnvironmentVariableIsSet(variable)) {
        if (offersLayerShell())
            choose("wayland");
        else if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY"))
            choose("xcb");
    }
    // Only if told so does Qt leave the panel's surface to us.
    if (qgetenv(variable).startsWith("wayland"))
        qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
#endif
}

PlatformChoice::~PlatformChoice()
{
    if (m_isMade)
        qunsetenv(variable);
}

void PlatformChoice::choose(const char *platform)
{
    qputenv(variable, platform);
    m_isMade = true;
}

} // namespace randblatt
