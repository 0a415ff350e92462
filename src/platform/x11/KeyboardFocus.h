#pragma once

#include "platform/x11/X11Connection.h"

namespace randblatt {

/// Who has the keyboard, in terms of whole windows: through the window manager where one speaks the Extended
/// Window Manager Hints, else with the server itself.
class KeyboardFocus
{
public:
    explicit KeyboardFocus(const X11Connection &x11);

    /// The window that has the keyboard; XCB_NONE if none has.
    [[nodiscard]] xcb_window_t owner() const;
    /// Gives a window the keyboard, on the user's behalf.
    void give(xcb_window_t window) const;
    /// Whether a window could get the keyboard without anything but the keyboard changing: it is on screen,
    /// not minimised and not on another desktop.
    [[nodiscard]] bool canTake(xcb_window_t window) const;
    /// Whether the owner may have changed with this property.
    [[nodiscard]] bool dependsOn(const xcb_property_notify_event_t &event) const;

private:
    const X11Connection &m_x11;
    xcb_atom_t m_activeWindow;
};

} // namespace randblatt
