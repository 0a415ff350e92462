#include "sidebar/PanelPopups.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace randblatt {

namespace {

struct Popup
{
    QObject *object;
    QQuickItem *item;
};

QList<Popup> popups(const QQuickWindow &window)
{
    QList<Popup> found;
    const auto overlays = window.contentItem()->childItems();
    for (const QQuickItem *overlay : overlays) {
        if (!overlay->inherits("QQuickOverlay"))
            continue;
        const auto items = overlay->childItems();
        for (QQuickItem *item : items) {
            if (QObject *popup = item->parent(); popup && popup->inherits("QQuickPopup"))
                found.append({popup, item});
        }
    }
    return found;
}

} // namespace

QList<RoundedShape> popupShapes(const QQuickWindow &window)
{
    QList<RoundedShape> shapes;
    const auto found = popups(window);
    for (const Popup &popup : found) {
        if (!popup.item->isVisible())
            continue;
        const auto *background = popup.object->property("background").value<QQuickItem *>();
        shapes.append({popup.item->mapRectToScene(popup.item->boundingRect()),
                       background ? background->property("radius").toDouble() : 0.0});
    }
    return shapes;
}

void closePopups(const QQuickWindow &window)
{
    const auto found = popups(window);
    for (const Popup &popup : found)
        QMetaObject::invokeMethod(popup.object, "close");
}

} // namespace randblatt
