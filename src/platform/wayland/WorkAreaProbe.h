#pragma once

#include <QRect>

#include <functional>
#include <optional>

class QScreen;
struct wl_surface;
struct xdg_popup;
struct zwlr_layer_surface_v1;

namespace randblatt {

class WaylandConnection;

/// Finds out what docks and bars leave of a screen, which the compositor tells nobody: a surface that is to
/// fill what is left is told its size, and a popup of it that wants to lie far outside is told how far it may
/// go, to the screen's corner. Neither is ever drawn.
class WorkAreaProbe
{
public:
    /// `changed` is called when area() may answer something else.
    WorkAreaProbe(const WaylandConnection &connection, QScreen &screen, std::function<void()> changed);
    ~WorkAreaProbe();
    WorkAreaProbe(const WorkAreaProbe &) = delete;
    WorkAreaProbe &operator=(const WorkAreaProbe &) = delete;

    /// In points from the screen's upper left corner; none as long as the compositor has not told.
    [[nodiscard]] std::optional<QRect> area();

private:
    [[nodiscard]] std::optional<QPoint> measureOrigin() const;

    const WaylandConnection &m_connection;
    std::function<void()> m_changed;
    wl_surface *m_surface;
    zwlr_layer_surface_v1 *m_layer;
    QSize m_size;
    std::optional<QPoint> m_origin;
};

} // namespace randblatt
