#pragma once

#include <QList>
#include <QRectF>
#include <QRegion>

namespace randblatt {

/// The radius of a card's corners in points.
inline constexpr double cardRadius = 18.0;

/// The part of a window of the given size that cards at these places cover, with their round corners. Points
/// that are covered by half or more belong to it.
[[nodiscard]] QRegion cardRegion(const QList<QRectF> &cards, const QSize &window);

/// The same of one rectangle with corners of any radius.
[[nodiscard]] QRegion roundedRegion(const QRect &rect, double cornerRadius);

} // namespace randblatt
