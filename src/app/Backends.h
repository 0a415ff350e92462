#pragma once

#include <QWindow>

#include <functional>
#include <memory>

namespace randblatt {

class BrowserAuthenticationSession;
class CalendarStore;
class Desktop;
class DesktopAppearance;
class GlobalShortcut;
class LoginItem;
class MediaKeySink;
class PanelWindow;
class ScreenReader;
class ScriptRunner;
class SystemWake;
class TrayHost;

/// The back ends of the seams that the running desktop calls for.
struct Backends
{
    Backends();
    ~Backends();
    Backends(Backends &&) noexcept;
    Backends &operator=(Backends &&) noexcept;

    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<DesktopAppearance> appearance;
    std::unique_ptr<ScreenReader> screenReader;
    std::unique_ptr<TrayHost> tray;
    std::unique_ptr<GlobalShortcut> shortcut;
    std::unique_ptr<MediaKeySink> mediaKeys;
    std::unique_ptr<CalendarStore> calendar;
    std::unique_ptr<SystemWake> wake;
    std::shared_ptr<ScriptRunner> scripts;
    std::unique_ptr<BrowserAuthenticationSession> signIn;
    /// Handles a window as the panel; the window must not have been shown yet.
    std::function<std::unique_ptr<PanelWindow>(std::unique_ptr<QWindow>)> makePanelWindow;
    /// Gives a shown window the keyboard, where more is needed for that than Qt's own request.
    std::function<void(QWindow &)> activate = [](QWindow &) {};
};

/// Chooses by the platform that Qt runs on; to be called once the application object exists.
[[nodiscard]] Backends makeBackends();

} // namespace randblatt
