#include "platform/wayland/ScreenPixels.h"

#include <QMarginsF>

#include <cmath>

namespace randblatt {

QRect pointsOf(const QRectF &frame, const QRectF &screenFrame)
{
    const double fromTop = (screenFrame.y() + screenFrame.height()) - (frame.y() + frame.height());
    return QRect(QPointF(frame.x() - screenFrame.x(), fromTop).toPoint(), frame.size().toSize());
}

QRect pointsWithin(const QRectF &area, const QRectF &screenFrame)
{
    const double lastRow = screenFrame.y() + screenFrame.height() - 1.0;
    const QPoint first(static_cast<int>(std::ceil(area.x() - screenFrame.x())),
                       static_cast<int>(std::ceil(lastRow - (area.y() + area.height()))));
    const QPoint last(static_cast<int>(std::floor(area.x() + area.width() - screenFrame.x())),
                      static_cast<int>(std::floor(lastRow - area.y())));
    return QRect(first, last) & QRect(QPoint(), screenFrame.size().toSize());
}

QPointF positionInCore(const QPointF &position, const QRectF &screenFrame)
{
    return {screenFrame.x() + std::floor(position.x()),
            screenFrame.y() + screenFrame.height() - 1.0 - std::floor(position.y())};
}

} // namespace randblatt
