#include "platform/wayland/LayerSurface.h"

#include "platform/PanelWindowSetup.h"
#include "platform/wayland/LayerShellProtocol.h"
#include "platform/wayland/WaylandConnection.h"

#include <wayland-client.h>

namespace randblatt {

namespace {

// Not to be pushed aside by what others reserve, but measured from the screen's own edges.
constexpr int32_t overReservedSpace = -1;
constexpr int32_t besideReservedSpace = 0;

} // namespace

LayerSurface::LayerSurface(const WaylandConnection &connection, QWindow &window, Origin origin)
    : m_connection(connection)
    , m_window(window)
    , m_origin(origin)
{
    setUpPanelWindow(m_window);
    // Qt makes no shell surface of its own for such a window, if the environment asks for it.
    m_window.setFlag(Qt::BypassWindowManagerHint);
}

LayerSurface::~LayerSurface()
{
    hide();
}

void LayerSurface::show(QScreen &screen, const QRect &rect, std::function<void()> closed)
{
    hide();
    m_rect = rect;
    m_closed = std::move(closed);
    m_window.setScreen(&screen);
    m_window.resize(rect.size());
    // The surface is made with every show. Qt draws into it only when its events are processed, and by then
    // it has become a layer surface, which must not have a picture before.
    m_window.show();
    wl_surface *surface = WaylandConnection::surface(m_window);
    if (surface == nullptr)
        return;
    static constexpr zwlr_layer_surface_v1_listener listener{
        &LayerSurface::configured,
        &LayerSurface::closedByCompositor,
    };
    m_surface = zwlr_layer_shell_v1_get_layer_surface(m_connection.layerShell(), surface,
                                                      WaylandConnection::output(screen),
                                                      ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "quillbar");
    zwlr_layer_surface_v1_add_listener(m_surface, &listener, this);
    zwlr_layer_surface_v1_set_anchor(m_surface,
                                     ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
    zwlr_layer_surface_v1_set_exclusive_zone(m_surface, m_origin == Origin::screen ? overReservedSpace
                                                                                   : besideReservedSpace);
    place();
    setTakesKeyboard(m_takesKeyboard);
    commit();
    m_connection.waitForAnswers();
    WaylandConnection::releaseEvents(reinterpret_cast<wl_proxy *>(m_surface));
}

void LayerSurface::setRect(const QRect &rect)
{
    if (m_rect == rect)
        return;
    m_rect = rect;
    m_window.resize(rect.size());
    if (m_surface == nullptr)
        return;
    place();
    commit();
}

void LayerSurface::setTakesKeyboard(bool takes)
{
    m_takesKeyboard = takes;
    if (m_surface == nullptr)
        return;
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        m_surface, takes ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                         : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    commit();
}

void LayerSurface::hide()
{
    if (m_surface == nullptr)
        return;
    // Qt destroys the window's surface, whose role must end before.
    zwlr_layer_surface_v1_destroy(m_surface);
    m_surface = nullptr;
    m_window.hide();
    m_connection.flush();
}

void LayerSurface::configured(void *, zwlr_layer_surface_v1 *surface, uint32_t serial, uint32_t, uint32_t)
{
    zwlr_layer_surface_v1_ack_configure(surface, serial);
}

void LayerSurface::closedByCompositor(void *data, zwlr_layer_surface_v1 *)
{
    auto *self = static_cast<LayerSurface *>(data);
    // Who asked for it puts away first what belongs to the surface.
    if (self->m_closed)
        self->m_closed();
    self->hide();
}

void LayerSurface::place() const
{
    zwlr_layer_surface_v1_set_size(m_surface, static_cast<uint32_t>(m_rect.width()),
                                   static_cast<uint32_t>(m_rect.height()));
    zwlr_layer_surface_v1_set_margin(m_surface, m_rect.y(), 0, 0, m_rect.x());
}

void LayerSurface::commit() const
{
    if (m_surface == nullptr)
        return;
    if (wl_surface *surface = WaylandConnection::surface(m_window)) {
        wl_surface_commit(surface);
        m_connection.flush();
    }
}

} // namespace randblatt
