#include "sidebar/FocusReveal.h"

#include <algorithm>

namespace randblatt {

namespace {

// What is scrolled to does not stick to the edge.
constexpr double margin = 36;

/// The part of an item that matters to who uses it.
QRectF placeIn(const QQuickItem &item)
{
    const QVariant cursor = item.property("cursorRectangle");
    return cursor.isValid() ? cursor.toRectF() : item.boundingRect();
}

/// A place in an item as it lies in one of its ancestors. What a view in between has scrolled away counts as
/// lying at that view's edge.
QRectF mapped(QRectF place, const QQuickItem *item, const QQuickItem *ancestor)
{
    while (item && item != ancestor) {
        if (item->clip()) {
            place.moveTop(std::clamp(place.top(), 0.0, std::max(0.0, item->height() - place.height())));
            place.setBottom(std::min(place.bottom(), item->height()));
        }
        QQuickItem *parent = item->parentItem();
        place = item->mapRectToItem(parent, place);
        item = parent;
    }
    return place;
}

} // namespace

double FocusReveal::contentY(QQuickItem *flickable, QQuickItem *item, bool wholly)
{
    const View view{flickable->property("contentY").toDouble(), flickable->height(),
                    flickable->property("contentHeight").toDouble()};
    const auto *content = flickable->property("contentItem").value<QQuickItem *>();
    if (!content->isAncestorOf(item))
        return view.offset;
    const QRectF place = mapped(placeIn(*item), item, content);
    return offsetFor(view, place.top(), place.bottom(), wholly);
}

double FocusReveal::offsetFor(const View &view, double top, double bottom, bool wholly)
{
    const double end = view.offset + view.height;
    const bool isLonger = bottom - top > view.height;
    const bool isSeen = bottom > view.offset && top < end;
    const bool isSeenWholly = top >= view.offset && bottom <= end;
    if (isSeenWholly || (isSeen && (isLonger || !wholly)))
        return view.offset;
    const double above = top - margin;
    const double below = bottom + margin - view.height;
    const double wanted = top < view.offset || isLonger ? above : std::min(below, top);
    return std::clamp(wanted, 0.0, std::max(0.0, view.contentHeight - view.height));
}

} // namespace randblatt
