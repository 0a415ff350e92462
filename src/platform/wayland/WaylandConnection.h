#pragma once

#include <QObject>
#include <QRegion>
#include <QSize>

#include <cstdint>

class QScreen;
class QWindow;
struct ext_background_effect_manager_v1;
struct org_kde_kwin_blur_manager;
struct wl_compositor;
struct wl_display;
struct wl_event_queue;
struct wl_output;
struct wl_proxy;
struct wl_region;
struct wl_registry;
struct wl_surface;
struct xdg_wm_base;
struct zwlr_layer_shell_v1;

namespace randblatt {

/// Qt's own connection to the compositor, with the global objects that the back ends share. To be made and
/// used while the application object runs on a Wayland platform.
class WaylandConnection : public QObject
{
    Q_OBJECT

public:
    WaylandConnection();
    ~WaylandConnection() override;

    [[nodiscard]] wl_compositor *compositor() const { return m_compositor; }
    /// Null where the compositor does not announce it, as with the ones below.
    [[nodiscard]] zwlr_layer_shell_v1 *layerShell() const { return m_layerShell; }
    [[nodiscard]] xdg_wm_base *windowShell() const { return m_windowShell; }
    /// Null as well while it has no blur to offer.
    [[nodiscard]] ext_background_effect_manager_v1 *backgroundEffects() const
    {
        return m_canBlur ? m_backgroundEffects.object : nullptr;
    }
    [[nodiscard]] org_kde_kwin_blur_manager *kwinBlur() const { return m_kwinBlur.object; }

    /// The surface of a window that is shown; null for any other.
    [[nodiscard]] static wl_surface *surface(QWindow &window);
    [[nodiscard]] static wl_output *output(QScreen &screen);
    /// To be destroyed by the caller.
    [[nodiscard]] wl_region *makeRegion(const QRegion &region) const;

    /// Objects that were made through the global objects get their events only while this waits, until the
    /// compositor has answered all that was asked so far; …
    void waitForAnswers() const;
    /// … or, from here on, whenever Qt gets its own.
    static void releaseEvents(wl_proxy *proxy);
    /// Sends what was asked for.
    void flush() const;

Q_SIGNALS:
    /// backgroundEffects() or kwinBlur() answer something else.
    void blurChanged();

private:
    /// A global object that may go before the compositor does.
    template <typename Object>
    struct Passing
    {
        Object *object = nullptr;
        uint32_t name = 0;
    };

    static void announced(void *data, wl_registry *registry, uint32_t name, const char *interface,
                          uint32_t version);
    static void withdrawn(void *data, wl_registry *registry, uint32_t name);
    static void toldCapabilities(void *data, ext_background_effect_manager_v1 *effects, uint32_t flags);
    void dropBackgroundEffects();
    void dropKWinBlur();

    wl_display *m_display;
    wl_event_queue *m_queue = nullptr;
    wl_registry *m_registry = nullptr;
    wl_compositor *m_compositor = nullptr;
    zwlr_layer_shell_v1 *m_layerShell = nullptr;
    xdg_wm_base *m_windowShell = nullptr;
    Passing<ext_background_effect_manager_v1> m_backgroundEffects;
    bool m_canBlur = false;
    Passing<org_kde_kwin_blur_manager> m_kwinBlur;
};

} // namespace randblatt
