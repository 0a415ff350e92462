#pragma once

#include "platform/x11/X11Connection.h"

#include <QList>
#include <QRect>

namespace randblatt {

/// The outermost rows and columns of a monitor that belong to an area: where the pointer ends that is pushed
/// towards it. All in native pixels.
[[nodiscard]] QList<QRect> triggerStrips(const QRect &area, const QRect &monitor);

/// A window that nobody sees, above all others, over which the X server knows where the pointer is. It takes
/// the clicks that are meant for what lies below.
class TriggerStrip
{
public:
    /// `rect` is in native pixels.
    explicit TriggerStrip(const QRect &rect);
    ~TriggerStrip();
    TriggerStrip(const TriggerStrip &) = delete;
    TriggerStrip &operator=(const TriggerStrip &) = delete;

    [[nodiscard]] QRect rect() const { return m_rect; }

private:
    QRect m_rect;
    X11Connection m_x11;
    xcb_window_t m_window = XCB_NONE;
    xcb_colormap_t m_colours = XCB_NONE;
};

} // namespace randblatt
