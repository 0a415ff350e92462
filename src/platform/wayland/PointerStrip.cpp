#include "platform/wayland/PointerStrip.h"

#include <QMouseEvent>
#include <QPainter>

namespace randblatt {

namespace {

// An empty mask would be none.
const QRect nothing(-1, -1, 1, 1);

} // namespace

PointerStrip::PointerStrip(const WaylandConnection &connection, QScreen &screen, const QRect &rect,
                           bool yieldsToClicks)
    : m_rect(rect)
    , m_yieldsToClicks(yieldsToClicks)
    , m_surface(connection, *this, LayerSurface::Origin::screen)
{
    m_surface.show(screen, rect);
}

void PointerStrip::makeWayFor(const QRegion &region)
{
    const QRegion left = QRegion(QRect(QPoint(), m_rect.size())) - region.translated(-m_rect.topLeft());
    setMask(left.isEmpty() ? nothing : left);
    // There is nothing to paint that would make it take effect.
    m_surface.commit();
}

void PointerStrip::mousePressEvent(QMouseEvent *event)
{
    Q_EMIT pressed(m_rect.topLeft() + event->position().toPoint());
}

void PointerStrip::mouseReleaseEvent(QMouseEvent *)
{
    if (!m_yieldsToClicks)
        return;
    // A mask would not do: some compositors look for what is below the pointer only once it moves.
    m_surface.hide();
    Q_EMIT yielded();
}

void PointerStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
}

} // namespace randblatt
