#include "sidebar/CardRegion.h"

#include <algorithm>
#include <cmath>

namespace randblatt {

namespace {

/// How far the corner's arc leaves a row free, `distance` points from the nearer of the upper and lower
/// edges.
double inset(double distance, double radius)
{
    if (distance >= radius)
        return 0;
    const double height = radius - distance;
    return radius - std::sqrt(radius * radius - height * height);
}

} // namespace

QRegion roundedRegion(const QRect &rect, double cornerRadius)
{
    const double radius = std::min({cornerRadius, rect.width() / 2.0, rect.height() / 2.0});
    QRegion region;
    // Rows of the same width become one rectangle: a blur is asked for by rectangles.
    int first = 0;
    int present = 0;
    const auto close = [&](int end) {
        region += QRect(rect.x() + present, rect.y() + first, rect.width() - 2 * present, end - first);
    };
    for (int row = 0; row < rect.height(); ++row) {
        const double middle = row + 0.5;
        const int next =
            static_cast<int>(std::lround(inset(std::min(middle, rect.height() - middle), radius)));
        if (row > 0 && next != present) {
            close(row);
            first = row;
        }
        present = next;
    }
    if (rect.height() > 0)
        close(rect.height());
    return region;
}

QRegion cardRegion(const QList<QRectF> &cards, const QSize &window)
{
    QRegion region;
    for (const QRectF &card : cards)
        region += roundedRegion(card.toRect(), cardRadius);
    return region & QRect(QPoint(), window);
}

} // namespace randblatt
