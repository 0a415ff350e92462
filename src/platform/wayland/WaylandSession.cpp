#include "platform/wayland/WaylandSession.h"

#include "platform/wayland/LayerShellProtocol.h"

#include <QByteArray>

#include <wayland-client.h>

#include <cstring>

namespace randblatt {

bool offersLayerShell()
{
    // A connection that was handed down as a file descriptor can be used only once.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_SOCKET"))
        return false;
    wl_display *display = wl_display_connect(nullptr);
    if (display == nullptr)
        return false;
    bool found = false;
    static constexpr wl_registry_listener listener{
        [](void *data, wl_registry *, uint32_t, const char *interface, uint32_t) {
            if (std::strcmp(interface, zwlr_layer_shell_v1_interface.name) == 0)
                *static_cast<bool *>(data) = true;
        },
        [](void *, wl_registry *, uint32_t) {},
    };
    wl_registry *registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, &found);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return found;
}

} // namespace randblatt
