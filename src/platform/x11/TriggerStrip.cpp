#include "platform/x11/TriggerStrip.h"

namespace randblatt {

namespace {

constexpr int translucentDepth = 32;

/// A visual with an alpha channel; XCB_NONE where there is none.
xcb_visualid_t translucentVisual(xcb_connection_t *xcb, int screenNumber)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    while (screenNumber-- > 0)
        xcb_screen_next(&screens);
    for (auto depths = xcb_screen_allowed_depths_iterator(screens.data); depths.rem > 0;
         xcb_depth_next(&depths)) {
        const auto visuals = xcb_depth_visuals_iterator(depths.data);
        if (depths.data->depth == translucentDepth && visuals.rem > 0)
            return visuals.data->visual_id;
    }
    return XCB_NONE;
}

} // namespace

QList<QRect> triggerStrips(const QRect &area, const QRect &monitor)
{
    const QRect inside = area & monitor;
    QList<QRect> strips;
    if (inside.isEmpty())
        return strips;
    if (inside.left() == monitor.left())
        strips.append({inside.left(), inside.top(), 1, inside.height()});
    if (inside.right() == monitor.right())
        strips.append({inside.right(), inside.top(), 1, inside.height()});
    if (inside.top() == monitor.top())
        strips.append({inside.left(), inside.top(), inside.width(), 1});
    if (inside.bottom() == monitor.bottom())
        strips.append({inside.left(), inside.bottom(), inside.width(), 1});
    return strips;
}

TriggerStrip::TriggerStrip(const QRect &rect)
    : m_rect(rect)
{
    xcb_connection_t *xcb = m_x11.xcb();
    const xcb_visualid_t visual = translucentVisual(xcb, m_x11.screenNumber());
    if (visual == XCB_NONE)
        return;
    m_colours = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, m_colours, m_x11.root(), visual);
    // Not a window for input alone: a Wayland compositor never hears of those.
    xcb_create_window_value_list_t values{};
    values.override_redirect = 1;
    values.event_mask = XCB_EVENT_MASK_LEAVE_WINDOW;
    values.colormap = m_colours;
    m_window = xcb_generate_id(xcb);
    xcb_create_window_aux(xcb, translucentDepth, m_window, m_x11.root(), static_cast<qint16>(rect.x()),
                          static_cast<qint16>(rect.y()), static_cast<quint16>(rect.width()),
                          static_cast<quint16>(rect.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                              XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                          &values);
    xcb_map_window(xcb, m_window);
    xcb_flush(xcb);
}

TriggerStrip::~TriggerStrip()
{
    if (m_window == XCB_NONE)
        return;
    xcb_destroy_window(m_x11.xcb(), m_window);
    xcb_free_colormap(m_x11.xcb(), m_colours);
    xcb_flush(m_x11.xcb());
}

} // namespace randblatt
