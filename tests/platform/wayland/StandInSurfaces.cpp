#include "platform/wayland/StandInState.h"

// An argument of the protocol has the name of a keyword.
#define namespace name_space
#include <wlr-layer-shell-unstable-v1-server-protocol.h>
#undef namespace

#include <algorithm>

namespace randblatt::standin {

namespace {

// --- regions

const auto regionRequests = [] {
    struct wl_region_interface requests
    {
    };
    requests.destroy = destroy;
    requests.add = [](wl_client *, wl_resource *region, int32_t x, int32_t y, int32_t width, int32_t height) {
        *of<QRegion>(region) += QRect(x, y, width, height);
    };
    requests.subtract = [](wl_client *, wl_resource *region, int32_t x, int32_t y, int32_t width,
                           int32_t height) { *of<QRegion>(region) -= QRect(x, y, width, height); };
    return requests;
}();

// --- surfaces

bool isBetween(uint32_t anchor, uint32_t first, uint32_t second)
{
    return (anchor & first) != 0 && (anchor & second) != 0;
}

void commitLayer(Layer &layer)
{
    const Placement &next = layer.pending;
    layer.state->check(next.size.width() > 0 || isBetween(next.anchor, ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT,
                                                          ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT),
                       "a layer surface without a width");
    layer.state->check(next.size.height() > 0 || isBetween(next.anchor, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP,
                                                           ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM),
                       "a layer surface without a height");
    layer.state->check(next.size.width() == 0 || next.size.width() + next.margin.x() > 0,
                       "a layer surface that its margin leaves nothing of");
    layer.state->check(layer.isConfigured || layer.surface->buffer == nullptr,
                       "a picture before the first configure was acknowledged");
    const bool isFirst = !layer.isConfigured && layer.unanswered.empty();
    const bool isResized = next.size != layer.current.size;
    layer.current = next;
    if (isFirst || isResized)
        configure(layer, next.size.isEmpty() ? layer.output->size : next.size);
}

void showPicture(Surface &surface)
{
    const auto *buffer = surface.buffer == nullptr ? nullptr : wl_shm_buffer_get(surface.buffer);
    const bool isFirst = surface.picture.isEmpty();
    surface.picture = buffer == nullptr
                          ? QSize()
                          : QSize(wl_shm_buffer_get_width(const_cast<wl_shm_buffer *>(buffer)),
                                  wl_shm_buffer_get_height(const_cast<wl_shm_buffer *>(buffer)));
    if (buffer == nullptr)
        return;
    wl_buffer_send_release(surface.buffer);
    surface.buffer = nullptr;
    if (isFirst && surface.layer != nullptr && !surface.layer->output->resources.empty())
        wl_surface_send_enter(surface.resource, surface.layer->output->resources.front());
}

void commit(wl_client *, wl_resource *resource)
{
    auto &surface = *of<Surface>(resource);
    if (surface.layer != nullptr)
        commitLayer(*surface.layer);
    if (std::exchange(surface.isAttached, false))
        showPicture(surface);
    surface.input = surface.pendingInput;
    surface.effectRegion = surface.pendingEffect;
    if (std::exchange(surface.hasOtherKWinBlur, false))
        surface.kwinRegion = surface.kwinBlur == nullptr ? std::nullopt : surface.kwinBlur->current;
    for (wl_resource *frame : std::exchange(surface.frames, {})) {
        wl_callback_send_done(frame, 0);
        wl_resource_destroy(frame);
    }
}

const auto surfaceRequests = [] {
    struct wl_surface_interface requests
    {
    };
    requests.destroy = destroy;
    requests.attach = [](wl_client *, wl_resource *surface, wl_resource *buffer, int32_t, int32_t) {
        of<Surface>(surface)->buffer = buffer;
        of<Surface>(surface)->isAttached = true;
    };
    requests.damage = [](wl_client *, wl_resource *, int32_t, int32_t, int32_t, int32_t) {};
    requests.frame = [](wl_client *client, wl_resource *surface, uint32_t id) {
        of<Surface>(surface)->frames.push_back(wl_resource_create(client, &wl_callback_interface, 1, id));
    };
    requests.set_opaque_region = [](wl_client *, wl_resource *, wl_resource *) {};
    requests.set_input_region = [](wl_client *, wl_resource *surface, wl_resource *region) {
        of<Surface>(surface)->pendingInput = copy(region);
    };
    requests.commit = commit;
    requests.set_buffer_transform = [](wl_client *, wl_resource *, int32_t) {};
    requests.set_buffer_scale = [](wl_client *, wl_resource *, int32_t) {};
    requests.damage_buffer = [](wl_client *, wl_resource *, int32_t, int32_t, int32_t, int32_t) {};
    return requests;
}();

void surfaceGone(wl_resource *resource)
{
    auto *surface = of<Surface>(resource);
    surface->state->check(surface->layer == nullptr, "a surface that goes before its layer surface");
    if (surface->layer != nullptr)
        surface->layer->surface = nullptr;
    if (surface->effect != nullptr)
        surface->effect->surface = nullptr;
    if (surface->kwinBlur != nullptr)
        surface->kwinBlur->surface = nullptr;
    for (wl_resource *frame : surface->frames)
        wl_resource_destroy(frame);
    delete surface;
}

const auto compositorRequests = [] {
    struct wl_compositor_interface requests
    {
    };
    requests.create_surface = [](wl_client *client, wl_resource *compositor, uint32_t id) {
        wl_resource *resource =
            wl_resource_create(client, &wl_surface_interface, wl_resource_get_version(compositor), id);
        auto *surface = new Surface{of<State>(compositor), resource};
        wl_resource_set_implementation(resource, &surfaceRequests, surface, surfaceGone);
    };
    requests.create_region = [](wl_client *client, wl_resource *, uint32_t id) {
        wl_resource *region = wl_resource_create(client, &wl_region_interface, 1, id);
        wl_resource_set_implementation(region, &regionRequests, new QRegion, deleteData<QRegion>);
    };
    return requests;
}();

// --- the layer shell

const auto layerRequests = [] {
    struct zwlr_layer_surface_v1_interface requests
    {
    };
    requests.set_size = [](wl_client *, wl_resource *layer, uint32_t width, uint32_t height) {
        of<Layer>(layer)->pending.size = QSize(static_cast<int>(width), static_cast<int>(height));
    };
    requests.set_anchor = [](wl_client *, wl_resource *layer, uint32_t anchor) {
        of<Layer>(layer)->pending.anchor = anchor;
    };
    requests.set_exclusive_zone = [](wl_client *, wl_resource *, int32_t) {};
    requests.set_margin = [](wl_client *, wl_resource *layer, int32_t top, int32_t, int32_t, int32_t left) {
        of<Layer>(layer)->pending.margin = {left, top};
    };
    requests.set_keyboard_interactivity = [](wl_client *, wl_resource *layer, uint32_t value) {
        of<Layer>(layer)->state->check(value <= ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE,
                                       "a way to take the keyboard that this version does not have");
        of<Layer>(layer)->pending.takesKeyboard = value != 0;
    };
    requests.get_popup = [](wl_client *, wl_resource *, wl_resource *) {};
    requests.ack_configure = [](wl_client *, wl_resource *resource, uint32_t serial) {
        auto *layer = of<Layer>(resource);
        const auto it = std::find(layer->unanswered.begin(), layer->unanswered.end(), serial);
        layer->state->check(it != layer->unanswered.end(), "a configure acknowledged that never was");
        if (it == layer->unanswered.end())
            return;
        layer->isConfigured = true;
        layer->unanswered.erase(layer->unanswered.begin(), it + 1);
    };
    requests.destroy = destroy;
    return requests;
}();

void layerGone(wl_resource *resource)
{
    auto *layer = of<Layer>(resource);
    if (layer->surface != nullptr)
        layer->surface->layer = nullptr;
    layer->state->layers.remove(layer);
    delete layer;
}

const auto layerShellRequests = [] {
    struct zwlr_layer_shell_v1_interface requests
    {
    };
    requests.get_layer_surface = [](wl_client *client, wl_resource *shell, uint32_t id, wl_resource *surface,
                                    wl_resource *output, uint32_t, const char *name) {
        auto *state = of<State>(shell);
        auto *base = of<Surface>(surface);
        state->check(base->layer == nullptr, "a second layer surface for a surface");
        state->check(!base->isAttached && base->picture.isEmpty(),
                     "a layer surface that had a picture before");
        wl_resource *resource =
            wl_resource_create(client, &zwlr_layer_surface_v1_interface, wl_resource_get_version(shell), id);
        auto *layer = new Layer{state,
                                base,
                                resource,
                                output == nullptr ? &state->outputs.front() : of<Output>(output),
                                QLatin1StringView(name) == QLatin1StringView("quillbar"),
                                ++state->layersMade};
        base->layer = layer;
        state->layers.push_back(layer);
        wl_resource_set_implementation(resource, &layerRequests, layer, layerGone);
        if (layer->output->isGone) {
            layer->isClosed = true;
            zwlr_layer_surface_v1_send_closed(resource);
        }
    };
    requests.destroy = destroy;
    return requests;
}();

} // namespace

std::optional<QRegion> copy(wl_resource *region)
{
    return region == nullptr ? std::nullopt : std::optional(*of<QRegion>(region));
}

void configure(Layer &layer, const QSize &size)
{
    if (layer.isClosed)
        return;
    const uint32_t serial = wl_display_next_serial(layer.state->display);
    layer.unanswered.push_back(serial);
    zwlr_layer_surface_v1_send_configure(layer.resource, serial, static_cast<uint32_t>(size.width()),
                                         static_cast<uint32_t>(size.height()));
}

void bindCompositor(wl_client *client, void *data, uint32_t version, uint32_t id)
{
    wl_resource *resource =
        wl_resource_create(client, &wl_compositor_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &compositorRequests, data, nullptr);
}

void bindLayerShell(wl_client *client, void *data, uint32_t version, uint32_t id)
{
    wl_resource *resource =
        wl_resource_create(client, &zwlr_layer_shell_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &layerShellRequests, data, nullptr);
}

} // namespace randblatt::standin
