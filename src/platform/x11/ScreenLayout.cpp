#include "platform/x11/ScreenLayout.h"

#include "platform/Coordinates.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace randblatt {

namespace {

/// The monitor's frame in points, in Qt's coordinates.
QRectF points(const Monitor &monitor)
{
    return {monitor.native.topLeft(), QSizeF(monitor.native.size()) / monitor.factor};
}

QPointF points(const QPointF &native, const Monitor &monitor)
{
    const QPointF origin = monitor.native.topLeft();
    return origin + (native - origin) / monitor.factor;
}

QPointF pixels(const QPointF &point, const Monitor &monitor)
{
    const QPointF origin = monitor.native.topLeft();
    return origin + (point - origin) * monitor.factor;
}

QSize pixels(const QSizeF &size, const Monitor &monitor)
{
    return (size * monitor.factor).toSize();
}

double distance(const QRectF &rect, const QPointF &point)
{
    const double dx = std::max({rect.left() - point.x(), 0.0, point.x() - rect.right()});
    const double dy = std::max({rect.top() - point.y(), 0.0, point.y() - rect.bottom()});
    return std::hypot(dx, dy);
}

/// The monitor whose area, as `area` tells it, contains the point or is nearest to it.
template <typename Area>
const Monitor &nearest(const QList<Monitor> &monitors, const QPointF &point, Area area)
{
    return *std::min_element(monitors.cbegin(), monitors.cend(), [&](const Monitor &a, const Monitor &b) {
        return distance(area(a), point) < distance(area(b), point);
    });
}

} // namespace

ScreenLayout::ScreenLayout(QList<Monitor> monitors)
    : m_monitors(std::move(monitors))
{
}

QRectF ScreenLayout::inCore(const QRect &native, const Monitor &monitor) const
{
    const QRectF primary = points(m_monitors.first());
    const QRectF rect(points(native.topLeft(), monitor), QSizeF(native.size()) / monitor.factor);
    return flipped(rect.translated(-primary.topLeft()), primary.height());
}

std::optional<QPointF> ScreenLayout::pixelInCore(const QPoint &pixel) const
{
    if (m_monitors.isEmpty())
        return std::nullopt;
    // The pixel's centre, so that a pixel on the border of two monitors is nearer to its own.
    const Monitor &monitor = nearest(m_monitors, QPointF(pixel) + QPointF(0.5, 0.5),
                                     [](const Monitor &candidate) { return QRectF(candidate.native); });
    const QRectF primary = points(m_monitors.first());
    return flippedPixel(points(pixel, monitor) - primary.topLeft(), primary.height(), 1 / monitor.factor);
}

QRect ScreenLayout::inNative(const QRectF &frame) const
{
    if (m_monitors.isEmpty())
        return {};
    const QRectF primary = points(m_monitors.first());
    const QRectF rect = flipped(frame, primary.height()).translated(primary.topLeft());
    const Monitor &monitor =
        nearest(m_monitors, rect.center(), [](const Monitor &candidate) { return points(candidate); });
    QRect native(pixels(rect.topLeft(), monitor).toPoint(), pixels(rect.size(), monitor));

    // In the gap beside a scaled monitor the window can lie on another monitor's pixels. Qt then sizes its
    // content for that one; the edge that faces the chosen monitor stays.
    const auto shows = [&](const Monitor &candidate) { return candidate.native.contains(native.center()); };
    const auto other = std::find_if(m_monitors.cbegin(), m_monitors.cend(), shows);
    if (other != m_monitors.cend() && other->factor != monitor.factor) {
        const QPoint right = native.topRight();
        native.setSize(pixels(rect.size(), *other));
        if (native.left() < monitor.native.left())
            native.moveTopRight(right);
    }
    return native;
}

} // namespace randblatt
