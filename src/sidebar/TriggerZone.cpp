#include "sidebar/TriggerZone.h"

#include <algorithm>
#include <cmath>

namespace randblatt {

namespace {

// How far the panel's area reaches beyond the panel's inner edge, and beyond the screen on the other sides.
constexpr double innerReach = 14.0;
constexpr double tolerance = 4.0;

bool isWithin(double low, double value, double high)
{
    return low <= value && value <= high;
}

struct Band
{
    double minX;
    double maxX;
    double minY;
    double maxY;
};

Band panelBand(const Screen &screen, SidebarSide side, double panelWidth)
{
    const QRectF &frame = screen.frame;
    const QRectF &visible = screen.visibleFrame;
    const double reach = panelWidth + innerReach;
    const double visibleMaxX = visible.x() + visible.width();
    Band band{visible.x() - tolerance, visibleMaxX + tolerance, visible.y() - tolerance,
              visible.y() + visible.height() + tolerance};
    // Whoever comes from the edge to the panel crosses the dock that lies in between.
    if (side == SidebarSide::left) {
        band.minX = std::min(frame.x(), visible.x()) - tolerance;
        band.maxX = visible.x() + reach;
    } else {
        band.minX = visibleMaxX - reach;
        band.maxX = std::max(frame.x() + frame.width(), visibleMaxX) + tolerance;
    }
    return band;
}

} // namespace

bool TriggerZone::contains(const QRectF &frame, const QPointF &point) const
{
    const double minX = frame.x();
    const double maxX = frame.x() + frame.width();
    const double minY = frame.y();
    const double maxY = frame.y() + frame.height();
    if (coversEdge(mode)) {
        const double depth = std::fmax(edgeThickness, 1.0);
        if (side == SidebarSide::left ? point.x() <= minX + depth : point.x() >= maxX - depth)
            return true;
    }
    if (!coversCorners(mode))
        return false;
    const bool inColumn = side == SidebarSide::left ? isWithin(minX, point.x(), minX + cornerSize)
                                                    : isWithin(maxX - cornerSize, point.x(), maxX);
    return inColumn &&
           (isWithin(maxY - cornerSize, point.y(), maxY) || isWithin(minY, point.y(), minY + cornerSize));
}

QList<QRectF> TriggerZone::areas(const QRectF &frame) const
{
    const auto atSide = [&](double y, double width, double height) {
        const double x = side == SidebarSide::left ? frame.x() : frame.x() + frame.width() - width;
        return QRectF(x, y, width, height);
    };
    QList<QRectF> areas;
    if (coversEdge(mode))
        areas.append(atSide(frame.y(), std::fmax(edgeThickness, 1.0), frame.height()));
    if (coversCorners(mode) && cornerSize >= 0.0) {
        areas.append(atSide(frame.y() + frame.height() - cornerSize, cornerSize, cornerSize));
        areas.append(atSide(frame.y(), cornerSize, cornerSize));
    }
    return areas;
}

QRectF panelArea(const Screen &screen, SidebarSide side, double panelWidth)
{
    const Band band = panelBand(screen, side, panelWidth);
    return {QPointF(band.minX, band.minY), QPointF(band.maxX, band.maxY)};
}

QList<QRectF> around(const QRectF &hole, const QRectF &area)
{
    const QRectF inner = hole & area;
    QList<QRectF> parts{
        {area.topLeft(), QPointF(inner.left(), area.bottom())},
        {QPointF(inner.right(), area.top()), area.bottomRight()},
        {QPointF(inner.left(), area.top()), inner.topRight()},
        {inner.bottomLeft(), QPointF(inner.right(), area.bottom())},
    };
    parts.removeIf([](const QRectF &part) { return part.isEmpty(); });
    return parts;
}

bool isInPanelArea(const Screen &screen, SidebarSide side, double panelWidth, const QPointF &point)
{
    const Band band = panelBand(screen, side, panelWidth);
    return isWithin(band.minX, point.x(), band.maxX) && isWithin(band.minY, point.y(), band.maxY);
}

std::optional<Screen> screenAt(const QList<Screen> &screens, const QPointF &point)
{
    const auto contains = [&](const Screen &screen) {
        const QRectF &frame = screen.frame;
        return point.x() >= frame.x() && point.x() < frame.x() + frame.width() && point.y() >= frame.y() &&
               point.y() < frame.y() + frame.height();
    };
    const auto it = std::find_if(screens.begin(), screens.end(), contains);
    if (it == screens.end())
        return std::nullopt;
    return *it;
}

} // namespace randblatt
