#pragma once

#include "platform/Screen.h"

#include <QPoint>
#include <QPointF>
#include <QRect>

namespace randblatt {

// Between the core's coordinates and the points of one screen, counted from its upper left corner. A point is
// one whole column and row, as a pixel is on an unscaled screen; in the core it has the position of its lower
// left corner.

/// The rectangle that a frame takes, rounded to whole points; it may lie beyond the screen.
[[nodiscard]] QRect pointsOf(const QRectF &frame, const QRectF &screenFrame);
/// The points of the screen whose positions `area` contains, its borders included; empty if there are none.
[[nodiscard]] QRect pointsWithin(const QRectF &area, const QRectF &screenFrame);
/// Where the point is that contains `position`, which counts from the screen's upper left corner.
[[nodiscard]] QPointF positionInCore(const QPointF &position, const QRectF &screenFrame);

} // namespace randblatt
