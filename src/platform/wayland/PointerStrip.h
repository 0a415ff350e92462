#pragma once

#include "platform/wayland/LayerSurface.h"

#include <QRasterWindow>

namespace randblatt {

/// A rectangle of a screen that nobody sees, but that the pointer enters.
class PointerStrip : public QRasterWindow
{
    Q_OBJECT

public:
    /// `rect` is in points from the screen's upper left corner. A strip that yields to clicks lets the
    /// pointer through for good after the first.
    PointerStrip(const WaylandConnection &connection, QScreen &screen, const QRect &rect,
                 bool yieldsToClicks);

    [[nodiscard]] QRect rect() const { return m_rect; }
    /// Lets the pointer through where the strip lies over `region`, in points of the screen.
    void makeWayFor(const QRegion &region);

Q_SIGNALS:
    void pressed(const QPoint &position);
    /// A click was taken, the last one.
    void yielded();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QRect m_rect;
    bool m_yieldsToClicks;
    LayerSurface m_surface;
};

} // namespace randblatt
