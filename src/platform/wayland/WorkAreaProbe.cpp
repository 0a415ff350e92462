#include "platform/wayland/WorkAreaProbe.h"

#include "platform/wayland/LayerShellProtocol.h"
#include "platform/wayland/WaylandConnection.h"

#include <wayland-client.h>
#include <xdg-shell-client-protocol.h>

namespace randblatt {

namespace {

constexpr int32_t farOutside = -30000;
constexpr uint32_t allEdges = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                              ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

} // namespace

WorkAreaProbe::WorkAreaProbe(const WaylandConnection &connection, QScreen &screen,
                             std::function<void()> changed)
    : m_connection(connection)
    , m_changed(std::move(changed))
    , m_surface(wl_compositor_create_surface(connection.compositor()))
    , m_layer(zwlr_layer_shell_v1_get_layer_surface(
          connection.layerShell(), m_surface, WaylandConnection::output(screen),
          ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND, "quillbar-work-area"))
{
    static constexpr zwlr_layer_surface_v1_listener listener{
        [](void *data, zwlr_layer_surface_v1 *layer, uint32_t serial, uint32_t width, uint32_t height) {
            zwlr_layer_surface_v1_ack_configure(layer, serial);
            auto *self = static_cast<WorkAreaProbe *>(data);
            const QSize size(static_cast<int>(width), static_cast<int>(height));
            // Some compositors tell it anew with every change of any surface.
            if (self->m_size == size)
                return;
            self->m_size = size;
            self->m_origin.reset();
            self->m_changed();
        },
        [](void *, zwlr_layer_surface_v1 *) {},
    };
    zwlr_layer_surface_v1_add_listener(m_layer, &listener, this);
    zwlr_layer_surface_v1_set_anchor(m_layer, allEdges);
    wl_surface_commit(m_surface);
    m_connection.waitForAnswers();
    WaylandConnection::releaseEvents(reinterpret_cast<wl_proxy *>(m_layer));
}

WorkAreaProbe::~WorkAreaProbe()
{
    zwlr_layer_surface_v1_destroy(m_layer);
    wl_surface_destroy(m_surface);
    m_connection.flush();
}

std::optional<QRect> WorkAreaProbe::area()
{
    if (m_size.isEmpty())
        return std::nullopt;
    if (!m_origin)
        m_origin = measureOrigin().value_or(QPoint());
    return QRect(*m_origin, m_size);
}

std::optional<QPoint> WorkAreaProbe::measureOrigin() const
{
    xdg_wm_base *shell = m_connection.windowShell();
    if (shell == nullptr)
        return std::nullopt;
    xdg_positioner *wish = xdg_wm_base_create_positioner(shell);
    xdg_positioner_set_size(wish, 1, 1);
    xdg_positioner_set_anchor_rect(wish, 0, 0, 1, 1);
    xdg_positioner_set_anchor(wish, XDG_POSITIONER_ANCHOR_TOP_LEFT);
    xdg_positioner_set_gravity(wish, XDG_POSITIONER_GRAVITY_BOTTOM_RIGHT);
    xdg_positioner_set_offset(wish, farOutside, farOutside);
    xdg_positioner_set_constraint_adjustment(wish, XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_X |
                                                       XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_Y);
    wl_surface *surface = wl_compositor_create_surface(m_connection.compositor());
    xdg_surface *window = xdg_wm_base_get_xdg_surface(shell, surface);
    xdg_popup *popup = xdg_surface_get_popup(window, nullptr, wish);
    static constexpr xdg_popup_listener listener{
        [](void *data, xdg_popup *, int32_t x, int32_t y, int32_t, int32_t) {
            *static_cast<std::optional<QPoint> *>(data) = QPoint(-x, -y);
        },
        [](void *, xdg_popup *) {},
        [](void *, xdg_popup *, uint32_t) {},
    };
    std::optional<QPoint> origin;
    xdg_popup_add_listener(popup, &listener, &origin);
    zwlr_layer_surface_v1_get_popup(m_layer, popup);
    wl_surface_commit(surface);
    m_connection.waitForAnswers();
    xdg_popup_destroy(popup);
    xdg_surface_destroy(window);
    wl_surface_destroy(surface);
    xdg_positioner_destroy(wish);
    // Who does not slide popups leaves it where it wished to be.
    if (origin && (origin->x() < 0 || origin->y() < 0 || origin->x() >= -farOutside / 2 ||
                   origin->y() >= -farOutside / 2))
        origin.reset();
    return origin;
}

} // namespace randblatt
