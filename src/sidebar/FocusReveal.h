#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// Where a flickable has to be scrolled to, so that the place where one is typing or pressing is seen.
class FocusReveal : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The `contentY` for an item within the flickable: for a text its cursor counts, not its length. Unless
    /// it is wanted `wholly`, something of which any part is seen stays where it is.
    [[nodiscard]] Q_INVOKABLE static double contentY(QQuickItem *flickable, QQuickItem *item, bool wholly);

    /// What is seen of a content, along the axis of scrolling.
    struct View
    {
        double offset;
        double height;
        double contentHeight;
    };
    /// The offset for a place from `top` to `bottom`; never beyond the content's ends. Of a place that is
    /// longer than the view the top is shown, unless a part of it is seen.
    [[nodiscard]] static double offsetFor(const View &view, double top, double bottom, bool wholly);
};

} // namespace randblatt
