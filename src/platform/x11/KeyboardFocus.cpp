#include "platform/x11/KeyboardFocus.h"

#include <cstdlib>

namespace randblatt {

namespace {

// Source indication of a pager: window managers refuse an application that activates itself without a click,
// but not one that acts for the user.
constexpr quint32 onBehalfOfTheUser = 2;
constexpr quint32 allDesktops = 0xffffffff;

} // namespace

KeyboardFocus::KeyboardFocus(const X11Connection &x11)
    : m_x11(x11)
    , m_activeWindow(x11.atom("_NET_ACTIVE_WINDOW"))
{
    x11.listen(x11.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

xcb_window_t KeyboardFocus::owner() const
{
    if (m_x11.isSupported("_NET_ACTIVE_WINDOW"))
        return m_x11.numbers(m_x11.root(), m_activeWindow).value(0, XCB_NONE);
    xcb_get_input_focus_reply_t *reply =
        xcb_get_input_focus_reply(m_x11.xcb(), xcb_get_input_focus(m_x11.xcb()), nullptr);
    const xcb_window_t focus = reply ? reply->focus : xcb_window_t(XCB_NONE);
    std::free(reply);
    const bool isWindow = focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus != m_x11.root();
    return isWindow ? focus : xcb_window_t(XCB_NONE);
}

void KeyboardFocus::give(xcb_window_t window) const
{
    if (m_x11.isSupported("_NET_ACTIVE_WINDOW")) {
        m_x11.tellWindowManager(window, m_activeWindow, {onBehalfOfTheUser, XCB_CURRENT_TIME, owner(), 0, 0});
        return;
    }
    const auto cookie =
        xcb_set_input_focus_checked(m_x11.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_discard_reply(m_x11.xcb(), cookie.sequence);
    xcb_flush(m_x11.xcb());
}

bool KeyboardFocus::canTake(xcb_window_t window) const
{
    const auto cookie = xcb_get_window_attributes(m_x11.xcb(), window);
    xcb_get_window_attributes_reply_t *reply = xcb_get_window_attributes_reply(m_x11.xcb(), cookie, nullptr);
    const bool isOnScreen = reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    std::free(reply);
    if (!isOnScreen)
        return false;
    // Some window managers keep the windows of other desktops mapped, and would switch to theirs.
    const QList<quint32> desktop = m_x11.numbers(window, m_x11.atom("_NET_WM_DESKTOP"));
    return desktop.isEmpty() || desktop.first() == allDesktops ||
           desktop == m_x11.numbers(m_x11.root(), m_x11.atom("_NET_CURRENT_DESKTOP"));
}

bool KeyboardFocus::dependsOn(const xcb_property_notify_event_t &event) const
{
    return event.window == m_x11.root() && event.atom == m_activeWindow;
}

} // namespace randblatt
