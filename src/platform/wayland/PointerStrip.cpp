#include "platform/wayland/PointerStrip.h"

#include <QPainter>

namespace randblatt {

PointerStrip::PointerStrip(const WaylandConnection &connection, QScreen &screen, const QRect &rect)
    : m_rect(rect)
    , m_surface(connection, *this, LayerSurface::Origin::screen)
{
    m_surface.show(screen, rect);
}

void PointerStrip::makeWayFor(const QRect &rect)
{
    const QRegion whole(QRect(QPoint(), m_rect.size()));
    const QRegion left = whole - rect.translated(-m_rect.topLeft());
    if (left == whole)
        setMask({});
    else
        setMask(left.isEmpty() ? QRegion(-1, -1, 1, 1) : left); // An empty mask would be none.
}

void PointerStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
}

} // namespace randblatt
