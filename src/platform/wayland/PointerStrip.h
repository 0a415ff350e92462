#pragma once

#include "platform/wayland/LayerSurface.h"

#include <QRasterWindow>

namespace randblatt {

/// A rectangle of a screen that nobody sees, but that the pointer enters.
class PointerStrip : public QRasterWindow
{
    Q_OBJECT

public:
    /// `rect` is in points from the screen's upper left corner.
    PointerStrip(const WaylandConnection &connection, QScreen &screen, const QRect &rect);

    [[nodiscard]] QRect rect() const { return m_rect; }
    /// Lets the pointer through where the strip lies over `rect`, in points of the screen.
    void makeWayFor(const QRect &rect);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect m_rect;
    LayerSurface m_surface;
};

} // namespace randblatt
