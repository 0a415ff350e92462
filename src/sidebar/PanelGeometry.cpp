#include "sidebar/PanelGeometry.h"

#include <algorithm>
#include <cmath>

namespace randblatt {

namespace {

constexpr double defaultWidth = 420.0;
constexpr double bottomGap = 14.0;
constexpr double hiddenDistance = 24.0;
constexpr double smallestFraction = 0.3;

} // namespace

double limitedPanelWidth(double width, const QRectF &visibleFrame)
{
    const double usable = width >= 1.0 ? width : defaultWidth;
    return std::max(1.0, std::min(usable, visibleFrame.width()));
}

PanelGeometry panelGeometry(const QRectF &visibleFrame, SidebarSide side, double width, double heightFraction)
{
    const double fraction = heightFraction < 1.0 ? std::max(heightFraction, smallestFraction) : 1.0;
    const double height = std::max(1.0, (visibleFrame.height() - bottomGap) * fraction);
    const double limitedWidth = limitedPanelWidth(width, visibleFrame);
    const double maxX = visibleFrame.x() + visibleFrame.width();
    const double y = visibleFrame.y() + visibleFrame.height() - height;
    const double shownX = side == SidebarSide::left ? visibleFrame.x() : maxX - limitedWidth;
    return {
        QRectF(shownX, y, limitedWidth, height),
        QRectF(hiddenX(visibleFrame, side, limitedWidth), y, limitedWidth, height),
    };
}

double hiddenX(const QRectF &visibleFrame, SidebarSide side, double width)
{
    return side == SidebarSide::left ? visibleFrame.x() - width - hiddenDistance
                                     : visibleFrame.x() + visibleFrame.width() + hiddenDistance;
}

} // namespace randblatt
