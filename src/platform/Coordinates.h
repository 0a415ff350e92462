#pragma once

#include <QPointF>
#include <QRectF>

namespace randblatt {

/// Converts between Qt's coordinates (origin at the top left, y downwards) and the core's (origin at the
/// bottom left of the primary screen, y upwards). `primaryHeight` is the primary screen's height in points.
/// The conversion is its own inverse, so each function serves both directions.
[[nodiscard]] QRectF flipped(const QRectF &rect, double primaryHeight);

/// Converts the position of a pixel: the pixel is `extent` points high, and its lower left corner in the one
/// system is given for its upper left corner in the other. A pointer in the last row of the primary screen
/// thus has y = 0, and one in the first row a y below the screen's upper edge.
[[nodiscard]] QPointF flippedPixel(const QPointF &pixel, double primaryHeight, double extent = 1.0);

} // namespace randblatt
