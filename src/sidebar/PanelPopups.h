#pragma once

#include <QList>
#include <QRectF>

class QQuickWindow;

namespace randblatt {

/// A rectangle with round corners, in points of its window.
struct RoundedShape
{
    QRectF rect;
    double radius = 0.0;

    friend bool operator==(const RoundedShape &, const RoundedShape &) = default;
};

/// The menus and whatever else lies over the views of a window, as far as they are to be seen.
[[nodiscard]] QList<RoundedShape> popupShapes(const QQuickWindow &window);

/// Closes them; they would have the keyboard for themselves.
void closePopups(const QQuickWindow &window);

} // namespace randblatt
