#pragma once

#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QWindow>

#include <functional>

struct zwlr_layer_surface_v1;

namespace randblatt {

class WaylandConnection;

/// A window as a surface of the layer shell's topmost layer, which lies above full-screen windows as well.
class LayerSurface
{
public:
    /// What the surface's position counts from.
    enum class Origin { screen, workArea };

    /// Both are borrowed and must outlive the surface; the window must not have been created yet.
    LayerSurface(const WaylandConnection &connection, QWindow &window, Origin origin);
    ~LayerSurface();
    LayerSurface(const LayerSurface &) = delete;
    LayerSurface &operator=(const LayerSurface &) = delete;

    /// Shows the window at `rect`, in points from the origin's upper left corner; it may lie beyond the
    /// edges. Once the compositor takes the surface away, for instance with its screen, `closed` is called.
    void show(QScreen &screen, const QRect &rect, std::function<void()> closed = {});
    /// Moves or resizes the window, at once if it is on screen.
    void setRect(const QRect &rect);
    /// Whether the surface has the keyboard, to the exclusion of all others; nobody else can take it then.
    void setTakesKeyboard(bool takes);
    void hide();
    /// Makes what was asked for the surface in the meantime take effect, without a new picture.
    void commit() const;

    [[nodiscard]] bool isShown() const { return m_surface != nullptr; }
    [[nodiscard]] bool takesKeyboard() const { return m_takesKeyboard; }

private:
    static void configured(void *data, zwlr_layer_surface_v1 *surface, uint32_t serial, uint32_t width,
                           uint32_t height);
    static void closedByCompositor(void *data, zwlr_layer_surface_v1 *surface);
    void place() const;

    const WaylandConnection &m_connection;
    QWindow &m_window;
    Origin m_origin;
    QRect m_rect;
    bool m_takesKeyboard = false;
    zwlr_layer_surface_v1 *m_surface = nullptr;
    std::function<void()> m_closed;
};

} // namespace randblatt
