#pragma once

#include "platform/Screen.h"

#include <QRectF>
#include <QRegion>

namespace randblatt {

/// The sidebar's window as the desktop handles it: borderless, translucent, without a shadow, above other
/// windows, on every virtual desktop, absent from taskbar and pager, never moved by the user and never
/// activated by being shown. Frames are in the core's coordinates (see Screen).
class PanelWindow
{
public:
    PanelWindow() = default;
    virtual ~PanelWindow() = default;
    PanelWindow(const PanelWindow &) = delete;
    PanelWindow &operator=(const PanelWindow &) = delete;

    /// The screen that the frames set from now on belong to, also those beyond its edge.
    virtual void setScreen(const Screen &) {}
    /// Moves and resizes the window, also while it is hidden; positions beyond the screen's edge are allowed.
    virtual void setFrame(const QRectF &frame) = 0;
    /// The frame that was last set.
    [[nodiscard]] virtual QRectF frame() const = 0;
    /// 0 is invisible, 1 opaque.
    virtual void setAlpha(double alpha) = 0;
    [[nodiscard]] virtual double alpha() const = 0;
    /// Shows the window above the others without giving it the keyboard.
    virtual void orderFront() = 0;
    /// Hides the window. If it had the keyboard, the window that had it before gets it back.
    virtual void orderOut() = 0;
    /// Gives the window the keyboard.
    virtual void makeKey() = 0;
    /// Gives the keyboard back, if the window has it, to the window that had it before.
    virtual void resignKey() = 0;
    /// The part of the window that takes pointer and clicks, in points from the window's upper left corner;
    /// elsewhere they go to what lies below. The whole window until this is first called.
    virtual void setInputRegion(const QRegion &) {}
    /// The part of the window behind which the desktop is to be blurred, in points from the window's upper
    /// left corner; empty for none. A wish that few desktops grant.
    virtual void setBlurRegion(const QRegion &) {}
};

} // namespace randblatt
