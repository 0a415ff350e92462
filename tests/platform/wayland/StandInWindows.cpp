#include "platform/wayland/StandInState.h"

#include <xdg-shell-server-protocol.h>

namespace randblatt::standin {

namespace {

const auto positionerRequests = [] {
    struct xdg_positioner_interface requests
    {
    };
    requests.destroy = destroy;
    requests.set_size = [](wl_client *, wl_resource *, int32_t, int32_t) {};
    requests.set_anchor_rect = [](wl_client *, wl_resource *, int32_t, int32_t, int32_t, int32_t) {};
    requests.set_anchor = [](wl_client *, wl_resource *, uint32_t) {};
    requests.set_gravity = [](wl_client *, wl_resource *, uint32_t) {};
    requests.set_constraint_adjustment = [](wl_client *, wl_resource *, uint32_t) {};
    requests.set_offset = [](wl_client *, wl_resource *, int32_t, int32_t) {};
    return requests;
}();

const auto popupRequests = [] {
    struct xdg_popup_interface requests
    {
    };
    requests.destroy = destroy;
    return requests;
}();

const auto surfaceRequests = [] {
    struct xdg_surface_interface requests
    {
    };
    requests.destroy = destroy;
    requests.get_popup = [](wl_client *client, wl_resource *, uint32_t id, wl_resource *, wl_resource *) {
        wl_resource_set_implementation(wl_resource_create(client, &xdg_popup_interface, 1, id),
                                       &popupRequests, nullptr, nullptr);
    };
    return requests;
}();

const auto shellRequests = [] {
    struct xdg_wm_base_interface requests
    {
    };
    requests.destroy = destroy;
    requests.create_positioner = [](wl_client *client, wl_resource *, uint32_t id) {
        wl_resource_set_implementation(wl_resource_create(client, &xdg_positioner_interface, 1, id),
                                       &positionerRequests, nullptr, nullptr);
    };
    requests.get_xdg_surface = [](wl_client *client, wl_resource *, uint32_t id, wl_resource *) {
        wl_resource_set_implementation(wl_resource_create(client, &xdg_surface_interface, 1, id),
                                       &surfaceRequests, nullptr, nullptr);
    };
    requests.pong = [](wl_client *, wl_resource *, uint32_t) {};
    return requests;
}();

} // namespace

void bindWindowShell(wl_client *client, void *, uint32_t version, uint32_t id)
{
    wl_resource_set_implementation(
        wl_resource_create(client, &xdg_wm_base_interface, static_cast<int>(version), id), &shellRequests,
        nullptr, nullptr);
}

} // namespace randblatt::standin
