#include "platform/wayland/StandInCompositor.h"

#include "platform/wayland/StandInState.h"

#include <blur-server-protocol.h>
#include <ext-background-effect-v1-server-protocol.h>
#include <xdg-shell-server-protocol.h>
#define namespace name_space
#include <wlr-layer-shell-unstable-v1-server-protocol.h>
#undef namespace

#include <algorithm>

#include <poll.h>

namespace randblatt {

using namespace standin;

namespace {

void bindOutput(wl_client *client, void *data, uint32_t version, uint32_t id)
{
    static const auto requests = [] {
        struct wl_output_interface known
        {
        };
        known.release = destroy;
        return known;
    }();
    auto *output = static_cast<Output *>(data);
    wl_resource *resource = wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &requests, output,
                                   [](wl_resource *gone) { std::erase(of<Output>(gone)->resources, gone); });
    output->resources.push_back(resource);
    wl_output_send_geometry(resource, output->left, 0, 300, 200, WL_OUTPUT_SUBPIXEL_UNKNOWN, "", "",
                            WL_OUTPUT_TRANSFORM_NORMAL);
    wl_output_send_mode(resource, WL_OUTPUT_MODE_CURRENT, output->size.width(), output->size.height(), 60000);
    wl_output_send_scale(resource, 1);
    wl_output_send_done(resource);
}

} // namespace

StandInCompositor::StandInCompositor()
    : m_state(std::make_unique<State>())
{
    qputenv("WAYLAND_DISPLAY", wl_display_add_socket_auto(m_state->display));
    wl_display_init_shm(m_state->display);
    wl_global_create(m_state->display, &wl_compositor_interface, 4, m_state.get(), bindCompositor);
    wl_global_create(m_state->display, &zwlr_layer_shell_v1_interface, 3, m_state.get(), bindLayerShell);
    wl_global_create(m_state->display, &xdg_wm_base_interface, 1, m_state.get(), bindWindowShell);
    m_thread = std::thread([this] { run(); });
}

StandInCompositor::~StandInCompositor()
{
    m_ends = true;
    m_thread.join();
    wl_display_destroy_clients(m_state->display);
    wl_display_destroy(m_state->display);
}

void StandInCompositor::run()
{
    wl_event_loop *loop = wl_display_get_event_loop(m_state->display);
    pollfd input{wl_event_loop_get_fd(loop), POLLIN, 0};
    while (!m_ends) {
        poll(&input, 1, 10);
        const std::scoped_lock lock(m_mutex);
        wl_event_loop_dispatch(loop, 0);
        wl_display_flush_clients(m_state->display);
    }
}

int StandInCompositor::plug(const QSize &size)
{
    const std::scoped_lock lock(m_mutex);
    int left = 0;
    int number = 1;
    for (const Output &other : m_state->outputs) {
        left = other.isGone ? left : std::max(left, other.left + other.size.width());
        ++number;
    }
    Output &output = m_state->outputs.emplace_back(Output{number, left, size});
    output.global = wl_global_create(m_state->display, &wl_output_interface, 3, &output, bindOutput);
    return number;
}

void StandInCompositor::unplug(int number, Farewell farewell)
{
    const std::scoped_lock lock(m_mutex);
    const auto output = std::find_if(m_state->outputs.begin(), m_state->outputs.end(),
                                     [&](const Output &known) { return known.number == number; });
    output->isGone = true;
    if (farewell != Farewell::surfacesFirst)
        wl_global_remove(output->global);
    for (Layer *layer : m_state->layers) {
        if (layer->output != &*output || layer->isClosed)
            continue;
        layer->isClosed = true;
        if (farewell != Farewell::outputAlone)
            zwlr_layer_surface_v1_send_closed(layer->resource);
    }
    if (farewell == Farewell::surfacesFirst)
        wl_global_remove(output->global);
}

void StandInCompositor::offerBackgroundEffects(bool withBlur)
{
    const std::scoped_lock lock(m_mutex);
    m_state->canBlur = withBlur;
    if (m_state->effects == nullptr)
        m_state->effects = wl_global_create(m_state->display, &ext_background_effect_manager_v1_interface, 1,
                                            m_state.get(), bindEffects);
    for (wl_resource *manager : m_state->effectManagers)
        ext_background_effect_manager_v1_send_capabilities(manager, withBlur ? 1 : 0);
}

void StandInCompositor::withdrawBackgroundEffects()
{
    const std::scoped_lock lock(m_mutex);
    if (m_state->effects != nullptr)
        wl_global_remove(std::exchange(m_state->effects, nullptr));
}

void StandInCompositor::offerKWinBlur()
{
    const std::scoped_lock lock(m_mutex);
    m_state->kwinBlur = wl_global_create(m_state->display, &org_kde_kwin_blur_manager_interface, 1,
                                         m_state.get(), bindKWinBlur);
}

void StandInCompositor::withdrawKWinBlur()
{
    const std::scoped_lock lock(m_mutex);
    if (m_state->kwinBlur != nullptr)
        wl_global_remove(std::exchange(m_state->kwinBlur, nullptr));
    for (wl_resource *manager : std::exchange(m_state->kwinManagers, {}))
        wl_resource_set_user_data(manager, nullptr);
}

void StandInCompositor::closePanels()
{
    const std::scoped_lock lock(m_mutex);
    for (Layer *layer : m_state->layers) {
        if (!layer->isPanel || layer->isClosed)
            continue;
        layer->isClosed = true;
        zwlr_layer_surface_v1_send_closed(layer->resource);
    }
}

void StandInCompositor::configurePanels(const QSize &size)
{
    const std::scoped_lock lock(m_mutex);
    for (Layer *layer : m_state->layers) {
        if (layer->isPanel)
            configure(*layer, size);
    }
}

std::optional<StandInCompositor::Panel> StandInCompositor::panel(int width) const
{
    const std::scoped_lock lock(m_mutex);
    std::optional<Panel> found;
    for (const Layer *layer : m_state->layers) {
        if (!layer->isPanel || layer->isClosed || layer->surface == nullptr ||
            layer->current.size.width() != width)
            continue;
        if (found)
            return std::nullopt;
        const Surface &surface = *layer->surface;
        const QRect whole(QPoint(), layer->current.size);
        // With KWin's protocol an empty region means the whole surface.
        const QRegion byKWin = surface.kwinRegion && surface.kwinRegion->isEmpty()
                                   ? whole
                                   : surface.kwinRegion.value_or(QRegion());
        found = Panel{layer->id,
                      layer->output->number,
                      layer->current.margin,
                      layer->current.size,
                      surface.picture,
                      layer->current.takesKeyboard,
                      m_state->canBlur ? surface.effectRegion.value_or(QRegion()) & whole : QRegion(),
                      byKWin & whole,
                      surface.input.value_or(whole) & whole};
    }
    return found;
}

int StandInCompositor::blurObjects() const
{
    const std::scoped_lock lock(m_mutex);
    return m_state->blurObjects;
}

QString StandInCompositor::takeFaults()
{
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_state->faults, {}).join(u'\n');
}

} // namespace randblatt
