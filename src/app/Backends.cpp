#include "app/Backends.h"

#include "platform/GlobalShortcut.h"
#include "platform/browser/BrowserAuthenticationSession.h"
#include "platform/calendar/CalendarStores.h"
#include "platform/freedesktop/AtSpiScreenReader.h"
#include "platform/freedesktop/LogindWake.h"
#include "platform/freedesktop/PortalAppearance.h"
#include "platform/freedesktop/TrayHost.h"
#include "platform/freedesktop/UrlScheme.h"
#include "platform/freedesktop/XdgAutostartLoginItem.h"
#include "platform/generic/GenericDesktop.h"
#include "platform/generic/GenericPanelWindow.h"
#include "platform/generic/PaletteAppearance.h"
#include "platform/mpris/MprisMediaKeySink.h"
#include "platform/notes/NotesLibrary.h"
#include "platform/notes/ScriptRunners.h"
#include "platform/x11/KeyboardFocus.h"
#include "platform/x11/SelectionWatcher.h"
#include "platform/x11/X11Desktop.h"
#include "platform/x11/X11GlobalShortcut.h"
#include "platform/x11/X11PanelWindow.h"
#include "platform/x11/XWaylandDesktop.h"

#ifdef QUILLBAR_WAYLAND
#include "platform/wayland/LayerShellDesktop.h"
#include "platform/wayland/LayerShellPanelWindow.h"
#endif

#include <QDBusConnection>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// Lets the host know of an X11 system tray (freedesktop.org System Tray Protocol).
void watchClassicTray(TrayHost &host)
{
    auto *selection = new SelectionWatcher("_NET_SYSTEM_TRAY_S", SelectionWatcher::Scope::screen, &host);
    const auto follow = [selection, &host] {
        host.setClassicTray(selection->hasOwner(), selection->ownerColor("_NET_SYSTEM_TRAY_COLORS"));
    };
    QObject::connect(selection, &SelectionWatcher::ownerChanged, &host, follow);
    follow();
}

/// Whether the X server that we are on is a guest of a Wayland compositor.
bool isXWayland()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qEnvironmentVariable("XDG_SESSION_TYPE") == "wayland"_L1;
}

void useX11(Backends &backends)
{
    std::unique_ptr<X11Desktop> desktop;
    if (isXWayland())
        desktop = std::make_unique<XWaylandDesktop>();
    else
        desktop = std::make_unique<X11Desktop>();
    backends.makePanelWindow = [x11 = desktop.get()](std::unique_ptr<QWindow> window) {
        return std::make_unique<X11PanelWindow>(std::move(window), *x11);
    };
    backends.desktop = std::move(desktop);
    // A guest gets the keys only while one of the guests' windows has the keyboard.
    if (!isXWayland())
        backends.shortcut = std::make_unique<X11GlobalShortcut>();
    backends.activate = [](QWindow &window) {
        const X11Connection x11;
        KeyboardFocus(x11).give(static_cast<xcb_window_t>(window.winId()));
    };
    watchClassicTray(*backends.tray);
}

void useGeneric(Backends &backends)
{
    backends.desktop = std::make_unique<GenericDesktop>();
    backends.makePanelWindow = [](std::unique_ptr<QWindow> window) {
        return std::make_unique<GenericPanelWindow>(std::move(window));
    };
}

#ifdef QUILLBAR_WAYLAND
void useWayland(Backends &backends)
{
    auto desktop = std::make_unique<LayerShellDesktop>();
    if (!desktop->isUsable()) {
        useGeneric(backends);
        return;
    }
    backends.makePanelWindow = [wayland = desktop.get()](std::unique_ptr<QWindow> window) {
        const auto fade = [quick = qobject_cast<QQuickWindow *>(window.get())](double alpha) {
            quick->contentItem()->setOpacity(alpha);
        };
        return std::make_unique<LayerShellPanelWindow>(std::move(window), *wayland, fade);
    };
    backends.desktop = std::move(desktop);
    backends.activate = [](QWindow &window) {
        // Nobody may bring forward what lies below another program's window, but what comes anew is in front.
        if (window.isExposed() && !window.isActive()) {
            window.setVisible(false);
            window.setVisible(true);
        }
    };
}
#endif

} // namespace

Backends::Backends() = default;
Backends::~Backends() = default;
Backends::Backends(Backends &&) noexcept = default;
Backends &Backends::operator=(Backends &&) noexcept = default;

Backends makeBackends()
{
    Backends backends;
    backends.loginItem = std::make_unique<XdgAutostartLoginItem>(QCoreApplication::applicationFilePath());
    backends.tray = std::make_unique<TrayHost>(QDBusConnection::sessionBus());
    backends.appearance = std::make_unique<PortalAppearance>(QDBusConnection::sessionBus(),
                                                             std::make_unique<PaletteAppearance>());
    backends.screenReader = std::make_unique<AtSpiScreenReader>();
    backends.mediaKeys = std::make_unique<MprisMediaKeySink>();
    backends.signIn = std::make_unique<BrowserAuthenticationSession>([](const QUrl &url) {
        registerUrlScheme(u"randblatt"_s, QCoreApplication::applicationFilePath());
        return QDesktopServices::openUrl(url);
    });
    backends.calendar = makeCalendarStore();
    backends.wake = std::make_unique<LogindWake>(QDBusConnection::systemBus());
    backends.scripts = makeScriptRunner(NotesLibrary::defaultPath());
    backends.shortcut = std::make_unique<GlobalShortcut>();
    const QString platform = QGuiApplication::platformName();
    if (platform == "xcb"_L1)
        useX11(backends);
#ifdef QUILLBAR_WAYLAND
    else if (platform.startsWith("wayland"_L1))
        useWayland(backends);
#endif
    else
        useGeneric(backends);
    return backends;
}

} // namespace randblatt
