#include "platform/wayland/WaylandConnection.h"

#include "platform/wayland/LayerShellProtocol.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <blur-client-protocol.h>
#include <ext-background-effect-v1-client-protocol.h>
#include <wayland-client.h>
#include <xdg-shell-client-protocol.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace randblatt {

namespace {

// The newest versions whose requests are used here.
constexpr uint32_t compositorVersion = 4;
constexpr uint32_t layerShellVersion = 3;

template <typename Global>
void bindIfNamed(Global *&global, const wl_interface &known, uint32_t newest, wl_registry *registry,
                 uint32_t name, const char *interface, uint32_t version)
{
    if (global == nullptr && std::strcmp(interface, known.name) == 0)
        global = static_cast<Global *>(wl_registry_bind(registry, name, &known, std::min(version, newest)));
}

} // namespace

WaylandConnection::WaylandConnection()
    : m_display(static_cast<wl_display *>(
          QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display")))
    , m_queue(wl_display_create_queue(m_display))
{
    static constexpr wl_registry_listener registryListener{
        &WaylandConnection::announced,
        &WaylandConnection::withdrawn,
    };
    auto *display = static_cast<wl_display *>(wl_proxy_create_wrapper(m_display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(display), m_queue);
    m_registry = wl_display_get_registry(display);
    wl_proxy_wrapper_destroy(display);
    wl_registry_add_listener(m_registry, &registryListener, this);
    waitForAnswers();
    if (m_windowShell != nullptr) {
        static constexpr xdg_wm_base_listener listener{
            [](void *, xdg_wm_base *base, uint32_t serial) { xdg_wm_base_pong(base, serial); },
        };
        xdg_wm_base_add_listener(m_windowShell, &listener, nullptr);
    }
    if (m_backgroundEffects.object != nullptr) {
        waitForAnswers();
        releaseEvents(reinterpret_cast<wl_proxy *>(m_backgroundEffects.object));
    }
    releaseEvents(reinterpret_cast<wl_proxy *>(m_registry));
}

WaylandConnection::~WaylandConnection()
{
    dropKWinBlur();
    dropBackgroundEffects();
    if (m_windowShell != nullptr)
        xdg_wm_base_destroy(m_windowShell);
    if (m_layerShell != nullptr)
        zwlr_layer_shell_v1_destroy(m_layerShell);
    if (m_compositor != nullptr)
        wl_compositor_destroy(m_compositor);
    wl_registry_destroy(m_registry);
    wl_event_queue_destroy(m_queue);
}

void WaylandConnection::announced(void *data, wl_registry *registry, uint32_t name, const char *interface,
                                  uint32_t version)
{
    auto *self = static_cast<WaylandConnection *>(data);
    const auto bind = [&](auto *&global, const wl_interface &known, uint32_t newest) {
        bindIfNamed(global, known, newest, registry, name, interface, version);
    };
    bind(self->m_compositor, wl_compositor_interface, compositorVersion);
    bind(self->m_layerShell, zwlr_layer_shell_v1_interface, layerShellVersion);
    bind(self->m_windowShell, xdg_wm_base_interface, 1);
    const auto bindPassing = [&](auto &passing, const wl_interface &known) {
        if (passing.object != nullptr)
            return false;
        bind(passing.object, known, 1);
        passing.name = name;
        return passing.object != nullptr;
    };
    // What it can do, it tells next.
    if (bindPassing(self->m_backgroundEffects, ext_background_effect_manager_v1_interface)) {
        static constexpr ext_background_effect_manager_v1_listener listener{
            &WaylandConnection::toldCapabilities};
        ext_background_effect_manager_v1_add_listener(self->m_backgroundEffects.object, &listener, self);
    }
    if (bindPassing(self->m_kwinBlur, org_kde_kwin_blur_manager_interface))
        Q_EMIT self->blurChanged();
}

void WaylandConnection::withdrawn(void *data, wl_registry *, uint32_t name)
{
    auto *self = static_cast<WaylandConnection *>(data);
    const auto is = [name](const auto &passing) { return passing.object != nullptr && passing.name == name; };
    if (is(self->m_backgroundEffects))
        self->dropBackgroundEffects();
    else if (is(self->m_kwinBlur))
        self->dropKWinBlur();
    else
        return;
    Q_EMIT self->blurChanged();
}

void WaylandConnection::toldCapabilities(void *data, ext_background_effect_manager_v1 *, uint32_t flags)
{
    auto *self = static_cast<WaylandConnection *>(data);
    const bool canBlur = (flags & EXT_BACKGROUND_EFFECT_MANAGER_V1_CAPABILITY_BLUR) != 0;
    if (std::exchange(self->m_canBlur, canBlur) != canBlur)
        Q_EMIT self->blurChanged();
}

void WaylandConnection::dropBackgroundEffects()
{
    if (m_backgroundEffects.object != nullptr)
        ext_background_effect_manager_v1_destroy(m_backgroundEffects.object);
    m_backgroundEffects = {};
    m_canBlur = false;
}

void WaylandConnection::dropKWinBlur()
{
    if (m_kwinBlur.object != nullptr)
        org_kde_kwin_blur_manager_destroy(m_kwinBlur.object);
    m_kwinBlur = {};
}

wl_surface *WaylandConnection::surface(QWindow &window)
{
    return static_cast<wl_surface *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

wl_output *WaylandConnection::output(QScreen &screen)
{
    return static_cast<wl_output *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output", &screen));
}

wl_region *WaylandConnection::makeRegion(const QRegion &region) const
{
    wl_region *made = wl_compositor_create_region(m_compositor);
    for (const QRect &rect : region)
        wl_region_add(made, rect.x(), rect.y(), rect.width(), rect.height());
    return made;
}

void WaylandConnection::waitForAnswers() const
{
    wl_display_roundtrip_queue(m_display, m_queue);
}

void WaylandConnection::releaseEvents(wl_proxy *proxy)
{
    wl_proxy_set_queue(proxy, nullptr);
}

void WaylandConnection::flush() const
{
    wl_display_flush(m_display);
}

} // namespace randblatt
