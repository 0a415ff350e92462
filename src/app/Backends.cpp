#include "app/Backends.h"

#include "platform/browser/BrowserAuthenticationSession.h"
#include "platform/calendar/CalendarStores.h"
#include "platform/freedesktop/LogindWake.h"
#include "platform/freedesktop/TrayHost.h"
#include "platform/freedesktop/UrlScheme.h"
#include "platform/freedesktop/XdgAutostartLoginItem.h"
#include "platform/generic/GenericDesktop.h"
#include "platform/generic/GenericPanelWindow.h"
#include "platform/mpris/MprisMediaKeySink.h"
#include "platform/notes/NotesLibrary.h"
#include "platform/notes/ScriptRunners.h"
#include "platform/x11/KeyboardFocus.h"
#include "platform/x11/SelectionWatcher.h"
#include "platform/x11/X11Desktop.h"
#include "platform/x11/X11PanelWindow.h"

#include <QDBusConnection>
#include <QDesktopServices>
#include <QGuiApplication>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// Lets the host know of an X11 system tray (freedesktop.org System Tray Protocol).
void watchClassicTray(TrayHost &host)
{
    auto *selection = new SelectionWatcher("_NET_SYSTEM_TRAY_S", &host);
    const auto follow = [selection, &host] { host.setClassicTray(selection->hasOwner()); };
    QObject::connect(selection, &SelectionWatcher::ownerChanged, &host, follow);
    follow();
}

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
    backends.mediaKeys = std::make_unique<MprisMediaKeySink>();
    backends.signIn = std::make_unique<BrowserAuthenticationSession>([](const QUrl &url) {
        registerUrlScheme(u"randblatt"_s, QCoreApplication::applicationFilePath());
        return QDesktopServices::openUrl(url);
    });
    backends.calendar = makeCalendarStore();
    backends.wake = std::make_unique<LogindWake>(QDBusConnection::systemBus());
    backends.scripts = makeScriptRunner(NotesLibrary::defaultPath());
    if (QGuiApplication::platformName() == "xcb"_L1) {
        auto desktop = std::make_unique<X11Desktop>();
        backends.makePanelWindow = [x11 = desktop.get()](std::unique_ptr<QWindow> window) {
            return std::make_unique<X11PanelWindow>(std::move(window), *x11);
        };
        backends.desktop = std::move(desktop);
        backends.activate = [](QWindow &window) {
            const X11Connection x11;
            KeyboardFocus(x11).give(static_cast<xcb_window_t>(window.winId()));
        };
        watchClassicTray(*backends.tray);
    } else {
        backends.desktop = std::make_unique<GenericDesktop>();
        backends.makePanelWindow = [](std::unique_ptr<QWindow> window) {
            return std::make_unique<GenericPanelWindow>(std::move(window));
        };
    }
    return backends;
}

} // namespace randblatt
