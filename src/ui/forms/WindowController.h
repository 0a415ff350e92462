#pragma once

class QWindow;

namespace randblatt {

/// One of the application's windows, of which there is at most one.
class WindowController
{
public:
    WindowController() = default;
    WindowController(const WindowController &) = delete;
    WindowController &operator=(const WindowController &) = delete;
    virtual ~WindowController() = default;

    /// Makes the window if it is not there yet, shows it and brings it to the front.
    virtual void show() = 0;
    /// The window; null before the first show.
    [[nodiscard]] virtual QWindow *window() const = 0;
};

} // namespace randblatt
