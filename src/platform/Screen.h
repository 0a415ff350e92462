#pragma once

#include <QRectF>
#include <QString>

namespace randblatt {

/// One monitor, in the core's coordinates: device-independent points, origin at the bottom left of the
/// primary screen, y upwards. A rectangle's `top()` is therefore its smaller y, the lower edge.
struct Screen
{
    /// Names the monitor for as long as it stays connected; never empty.
    QString id;
    /// The whole monitor.
    QRectF frame;
    /// The frame without the space that docks and panels reserve.
    QRectF visibleFrame;

    friend bool operator==(const Screen &, const Screen &) = default;
};

} // namespace randblatt
