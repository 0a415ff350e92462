#pragma once

#include <QThread>

#include <memory>

namespace randblatt {

/// Loads what the first frame needs of the system, on threads beside the one that sets up the program: the
/// font configuration, and the graphics driver. To be made after the application object and before any
/// window.
class WarmUp
{
public:
    WarmUp();
    /// Waits for what is under way.
    ~WarmUp();
    WarmUp(const WarmUp &) = delete;
    WarmUp &operator=(const WarmUp &) = delete;

    /// Waits for the driver, which two threads must not load at a time; to be called before the first window.
    void finishGraphics();

private:
    std::unique_ptr<QThread> m_fonts;
    /// None where the driver is not to be touched early.
    std::unique_ptr<QThread> m_graphics;
};

} // namespace randblatt
