#include "platform/Coordinates.h"

namespace randblatt {

QRectF flipped(const QRectF &rect, double primaryHeight)
{
    return {rect.x(), primaryHeight - rect.y() - rect.height(), rect.width(), rect.height()};
}

QPointF flippedPixel(const QPointF &pixel, double primaryHeight, double extent)
{
    return {pixel.x(), primaryHeight - pixel.y() - extent};
}

} // namespace randblatt
