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

bool isInPanelArea(const QRectF &visibleFrame, SidebarSide side, double panelWidth, const QPointF &point)
{
    const double minX = visibleFrame.x();
    const double maxX = visibleFrame.x() + visibleFrame.width();
    const double minY = visibleFrame.y();
    const double maxY = visibleFrame.y() + visibleFrame.height();
    const double reach = panelWidth + innerReach;
    return isWithin(minY - tolerance, point.y(), maxY + tolerance) &&
           (side == SidebarSide::left ? isWithin(minX - tolerance, point.x(), minX + reach)
                                      : isWithin(maxX - reach, point.x(), maxX + tolerance));
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
